#pragma once

#include <QString>
#include <QStringList>

#include <memory>

/// The platform's record that starts the application when the user logs in. One implementation per platform;
/// CMake compiles exactly one of them, with its createLoginItem().
class LoginItem
{
public:
    virtual ~LoginItem() = default;

    /// Asks the platform every time: the user may have changed it in the desktop's own settings meanwhile.
    virtual bool isEnabled() const = 0;
    /// Registers or removes the record; false when the platform refused (the next isEnabled() tells the
    /// truth).
    virtual bool setEnabled(bool enabled) = 0;
};

/// The platform's login item for the application `applicationId` (a reverse-DNS name such as
/// "com.brambleworks.Glowdeck"). `folder`, when given, replaces the place where the platform keeps such
/// records (the demo and the tests keep theirs private); empty means the user's real one. `arguments` go with
/// the program when it is started at login (a settings file of its own).
std::unique_ptr<LoginItem> createLoginItem(const QString& applicationId, const QString& folder = QString(),
                                           const QStringList& arguments = QStringList());
