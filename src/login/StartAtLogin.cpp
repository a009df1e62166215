#include "login/StartAtLogin.h"

StartAtLogin::StartAtLogin(std::unique_ptr<LoginItem> item, QObject* parent)
    : QObject(parent), m_item(std::move(item))
{
    if (!m_item)
        qFatal("StartAtLogin needs a login item");
}

StartAtLogin::~StartAtLogin() = default;

bool StartAtLogin::isEnabled() const
{
    return m_item->isEnabled();
}

void StartAtLogin::setEnabled(bool enabled)
{
    Q_EMIT aboutToChange();
    m_item->setEnabled(enabled);
    Q_EMIT changed(m_item->isEnabled());
}
