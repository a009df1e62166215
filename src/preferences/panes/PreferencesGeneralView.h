#pragma once

#include <QIcon>
#include <QList>
#include <QUrl>
#include <QWidget>

#include <functional>

class Preferences;
class QCheckBox;
class QComboBox;
class StartAtLogin;
struct ProductLinks;

/// One image the tray icon can take: its name in the settings ("Icon_Lamp0"...), a word for it and the image.
struct AppIconChoice
{
    QString name;
    QString title;
    QIcon icon;
};

/// The general pane: "Run at Start", "Show color bars for rooms", "Show zones", "Show Scene Panel",
/// "Notifications", the "App Icon" picker, and below them the support links and the version.
class PreferencesGeneralView final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PreferencesGeneralView)

public:
    PreferencesGeneralView(Preferences& preferences, StartAtLogin& startAtLogin, QList<AppIconChoice> icons,
                           const ProductLinks& links, std::function<void(const QUrl&)> openUrl,
                           QWidget* parent = nullptr);

Q_SIGNALS:
    /// The user asked for the debug information window.
    void debugInformationRequested();

protected:
    /// The start-at-login state may have been changed in the desktop's own settings: read it again.
    void showEvent(QShowEvent* event) override;

private:
    void onRunAtStartToggled(bool checked);
    void onShowScenesToggled(bool checked);
    void onIconChosen(int index);
    void onSettingsChanged();

    Preferences& m_preferences;
    StartAtLogin& m_startAtLogin;
    QList<AppIconChoice> m_icons;
    QCheckBox* m_runAtStart;
    QCheckBox* m_colorBars;
    QCheckBox* m_showZones;
    QCheckBox* m_showScenes;
    QCheckBox* m_notifications;
    QComboBox* m_appIcon;
};
