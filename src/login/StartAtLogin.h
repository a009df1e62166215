#pragma once

#include "login/LoginItem.h"

#include <QObject>

#include <memory>

/// Whether the application starts when the user logs in. Holds no state of its own: every read goes to the
/// platform, so a change made elsewhere (the desktop's start-up settings) shows at the next read.
class StartAtLogin final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(StartAtLogin)

public:
    explicit StartAtLogin(std::unique_ptr<LoginItem> item, QObject* parent = nullptr);
    ~StartAtLogin() override;

    bool isEnabled() const;
    /// Tells the platform; a refusal is not reported here, the next isEnabled() shows the real state.
    void setEnabled(bool enabled);

Q_SIGNALS:
    /// Sent before the platform is told, for views that hold the old value.
    void aboutToChange();
    /// Sent after the platform was told, with what it now says.
    void changed(bool enabled);

private:
    std::unique_ptr<LoginItem> m_item;
};
