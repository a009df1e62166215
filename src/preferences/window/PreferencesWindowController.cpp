#include "preferences/window/PreferencesWindowController.h"

#include "state/AppSettings.h"

#include <QFormLayout>
#include <QLabel>
#include <QTabWidget>
#include <QVBoxLayout>

PreferencesWindowController::PreferencesWindowController(AppSettings& settings, QObject* parent)
    : QObject(parent), m_settings(settings)
{}

PreferencesWindowController::~PreferencesWindowController() = default;

void PreferencesWindowController::show()
{
    if (!m_window)
        createWindow();
    onStateChanged();
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

void PreferencesWindowController::createWindow()
{
    m_window = std::make_unique<QWidget>();
    m_window->setWindowTitle(QStringLiteral("Glowdeck Settings"));
    auto* tabs = new QTabWidget;
    auto* pane = new QWidget;
    auto* form = new QFormLayout(pane);
    m_address = new QLabel;
    m_connected = new QLabel;
    m_error = new QLabel;
    m_error->setWordWrap(true);
    for (QLabel* label : {m_address, m_connected, m_error})
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    form->addRow(QStringLiteral("Bridge address:"), m_address);
    form->addRow(QStringLiteral("Status:"), m_connected);
    form->addRow(QStringLiteral("Last error:"), m_error);
    tabs->addTab(pane, QStringLiteral("Connection"));
    auto* layout = new QVBoxLayout(m_window.get());
    layout->addWidget(tabs);
    m_window->resize(420, 160);

    connect(&m_settings, &AppSettings::hueIPChanged, this, &PreferencesWindowController::onStateChanged);
    connect(&m_settings, &AppSettings::bridgeConnectedChanged, this,
            &PreferencesWindowController::onStateChanged);
    connect(&m_settings, &AppSettings::connectionErrorMessageChanged, this,
            &PreferencesWindowController::onStateChanged);
}

void PreferencesWindowController::onStateChanged()
{
    if (!m_window)
        return;
    m_address->setText(m_settings.hueIP().isEmpty() ? QStringLiteral("(none yet)") : m_settings.hueIP());
    m_connected->setText(m_settings.bridgeConnected() ? QStringLiteral("Connected")
                                                      : QStringLiteral("Not connected"));
    m_error->setText(m_settings.connectionErrorMessage());
}
