#pragma once

#include <QWidget>

class AppSettings;
class BodyView;
class HueHelper;
class PanelTabs;
class RegularTitlebarView;
class WelcomeTitlebarView;
struct ProductLinks;

/// Everything inside the drop-down window: the title bar, a divider, the panel tabs and the body, on a
/// rounded background. 200 points wide; its ideal height is the one the user chose for the active panel.
class ContentView final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ContentView)

public:
    static constexpr int contentWidth = 200;
    static constexpr int minimumHeight = 200;

    ContentView(AppSettings& settings, HueHelper& helper, const ProductLinks& links,
                QWidget* parent = nullptr);

    QSize sizeHint() const override;

Q_SIGNALS:
    /// The user pressed one of the settings buttons: the window should hide and the preferences open.
    void settingsRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void onLightsChanged();
    void watchClicks(QObject* object);

    AppSettings& m_settings;
    WelcomeTitlebarView* m_welcomeTitle;
    RegularTitlebarView* m_regularTitle;
    PanelTabs* m_tabs;
    BodyView* m_body;
};
