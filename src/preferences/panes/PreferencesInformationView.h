#pragma once

#include <QUrl>
#include <QWidget>

#include <functional>

/// Support links and the version, at the foot of the general pane: "Get Support", a link to the questions
/// users ask most, "Provide Feedback", the debug information window, and "Version " with the version.
class PreferencesInformationView final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PreferencesInformationView)

public:
    /// An empty address hides its link (the tests and the demo switch the product's pages off).
    PreferencesInformationView(QUrl faq, QUrl feedback, std::function<void(const QUrl&)> openUrl,
                               QWidget* parent = nullptr);

    static QString versionText();

Q_SIGNALS:
    void debugInformationRequested();
};
