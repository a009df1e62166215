#pragma once

#include <QUrl>
#include <QWidget>

#include <functional>

class DebugReport;
class QLabel;
class QPushButton;

/// The "Debug Information" window: what the debug report holds, "Send Debug Data" (the same action as the
/// connection pane's link) and "Show Report", which opens the report the last run wrote.
class DebugView final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(DebugView)

public:
    DebugView(DebugReport& report, std::function<void(const QUrl&)> openUrl, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void onSend();
    void onFinished(bool written);
    void onShowReport();

    DebugReport& m_report;
    std::function<void(const QUrl&)> m_openUrl;
    QPushButton* m_send;
    QPushButton* m_show;
    QLabel* m_outcome;
};
