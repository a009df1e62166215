#include "preferences/panes/ConfigurationPart.h"

#include "model/BridgeAddress.h"
#include "state/BridgeLink.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QVBoxLayout>

ConfigurationPart::ConfigurationPart(BridgeLink& settings, QWidget* parent)
    : QWidget(parent), m_settings(settings), m_automatic(new QRadioButton(tr("Automatic"), this)),
      m_manual(new QRadioButton(tr("Manual"), this)), m_modes(new QStackedWidget(this)),
      m_detect(new QPushButton(tr("Detect and pair"))), m_found(new QLabel), m_address(new QLineEdit),
      m_addressProblem(new QLabel), m_connect(new QPushButton(tr("Connect")))
{
    m_automatic->setObjectName(QStringLiteral("automaticChoice"));
    m_manual->setObjectName(QStringLiteral("manualChoice"));
    auto* choice = new QButtonGroup(this);
    choice->addButton(m_automatic, automatic);
    choice->addButton(m_manual, manual);
    m_automatic->setChecked(true);
    // Toggled rather than clicked: assistive technology and the arrow keys switch a radio button without a
    // click.
    connect(choice, &QButtonGroup::idToggled, this, [this](int id, bool checked) {
        if (!checked)
            return;
        setConnectionType(ConnectionType(id));
        m_settings.preferences().setConnectsManually(id == manual); // the pane opens on it next time
    });
    auto* choiceRow = new QHBoxLayout;
    choiceRow->addWidget(m_automatic);
    choiceRow->addWidget(m_manual);
    choiceRow->addStretch();

    auto* automaticPage = new QWidget;
    auto* automaticRow = new QHBoxLayout(automaticPage);
    automaticRow->setContentsMargins(0, 0, 0, 0);
    m_detect->setObjectName(QStringLiteral("detectButton"));
    m_detect->setToolTip(tr("Finds the bridge on your network and asks it to pair at once: press its link "
                            "button first."));
    m_found->setObjectName(QStringLiteral("foundAddress"));
    automaticRow->addWidget(m_detect);
    automaticRow->addWidget(m_found, 1);
    connect(m_detect, &QPushButton::clicked, this, &ConfigurationPart::detectRequested);

    auto* manualPage = new QWidget;
    auto* manualColumn = new QVBoxLayout(manualPage);
    manualColumn->setContentsMargins(0, 0, 0, 0);
    auto* manualRow = new QHBoxLayout;
    manualColumn->addLayout(manualRow);
    m_addressProblem->setObjectName(QStringLiteral("addressProblem"));
    m_addressProblem->setWordWrap(true);
    m_addressProblem->setTextFormat(Qt::PlainText);
    m_addressProblem->hide();
    manualColumn->addWidget(m_addressProblem);
    m_address->setObjectName(QStringLiteral("addressField"));
    m_address->setPlaceholderText(addressPlaceholder());
    m_address->setAccessibleName(addressPlaceholder());
    m_address->setFixedWidth(200);
    m_connect->setObjectName(QStringLiteral("manualConnectButton"));
    manualRow->addWidget(m_address);
    manualRow->addWidget(m_connect);
    manualRow->addStretch();
    // textChanged, not textEdited: assistive technology sets the whole text at once.
    connect(m_address, &QLineEdit::textChanged, this, &ConfigurationPart::onAddressEdited);
    connect(m_address, &QLineEdit::returnPressed, this, [this] {
        if (m_addressProblem->isHidden())
            Q_EMIT connectRequested();
    });
    connect(m_connect, &QPushButton::clicked, this, &ConfigurationPart::connectRequested);

    m_modes->addWidget(automaticPage);
    m_modes->addWidget(manualPage);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(choiceRow);
    layout->addWidget(m_modes);

    connect(&m_settings, &BridgeLink::hueIPChanged, this, &ConfigurationPart::onHueIPChanged);
    onHueIPChanged();
    if (m_settings.preferences().connectsManually())
        setConnectionType(manual);
}

QString ConfigurationPart::addressPlaceholder()
{
    return tr("IP address of your Hue bridge");
}

void ConfigurationPart::setConnectionType(ConnectionType type)
{
    const bool changed = std::exchange(m_connectionType, type) != type;
    (type == manual ? m_manual : m_automatic)->setChecked(true);
    m_modes->setCurrentIndex(type);
    if (type == manual && m_automatic->hasFocus())
        m_address->setFocus();
    if (changed)
        Q_EMIT connectionTypeChanged(type);
}

void ConfigurationPart::setBusy(bool detecting, bool connecting)
{
    m_detect->setEnabled(!detecting && !connecting);
    m_detect->setText(detecting ? tr("Detecting…") : tr("Detect and pair"));
    m_connecting = connecting;
    m_connect->setEnabled(!connecting && m_addressProblem->isHidden());
    m_connect->setText(connecting ? tr("Connecting…") : tr("Connect"));
}

void ConfigurationPart::onHueIPChanged()
{
    const QString address = m_settings.hueIP();
    // Typing sets the address as it goes: leave the field alone unless the address came from elsewhere.
    if (m_address->text().trimmed() != address)
        m_address->setText(address);
    m_found->setText(address.isEmpty() ? tr("No bridge found yet.") : tr("Bridge at %1").arg(address));
}

void ConfigurationPart::showFoundCount(int count)
{
    m_found->setText(tr("%n bridges found.", nullptr, count));
}

void ConfigurationPart::onAddressEdited(const QString& text)
{
    // Only an address reaches the settings, so that nothing typed can become part of a request's path.
    QString problem;
    const QString address = text.trimmed();
    const bool usable = address.isEmpty() || BridgeAddress::parse(address, &problem).has_value();
    m_addressProblem->setText(problem);
    m_addressProblem->setVisible(!usable);
    m_address->setAccessibleDescription(problem);
    m_connect->setEnabled(usable && !m_connecting);
    if (usable)
        m_settings.setHueIP(address);
}
