#pragma once

#include <QObject>

#include <memory>

class AppSettings;
class QLabel;
class QWidget;

/// The preferences window. For now it holds the connection tab only: the bridge address, whether the bridge
/// is connected and the last connection error, read from the shared state and kept current.
class PreferencesWindowController final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PreferencesWindowController)

public:
    explicit PreferencesWindowController(AppSettings& settings, QObject* parent = nullptr);
    ~PreferencesWindowController() override;

    /// Shows the window (created on first use) and brings it to the front.
    void show();
    /// The window, once shown.
    QWidget* window() const { return m_window.get(); }

private:
    void createWindow();
    void onStateChanged();

    AppSettings& m_settings;
    std::unique_ptr<QWidget> m_window;
    QLabel* m_address = nullptr;
    QLabel* m_connected = nullptr;
    QLabel* m_error = nullptr;
};
