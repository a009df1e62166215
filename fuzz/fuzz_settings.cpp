// A settings file's text: parsed as the store parses it, then every value read the way the application reads
// its settings, each as a boolean, a whole number and text, and the stored bridges read as contacts.
#include "model/BridgeContact.h"
#include "state/JsonSettingsStore.h"
#include "state/Preferences.h"

#include <QVariantMap>

#include <cstddef>
#include <cstdint>

namespace {

class ParsedStore final : public SettingsStore
{
public:
    explicit ParsedStore(QVariantMap values) : m_values(std::move(values)) {}
    bool contains(const QString& key) const override { return m_values.contains(key); }
    QVariant value(const QString& key) const override { return m_values.value(key); }
    void setValue(const QString& key, const QVariant& value) override { m_values.insert(key, value); }
    void remove(const QString& key) override { m_values.remove(key); }

protected:
    void reportUnreadable(const QString&, const QString&) const override {}

private:
    QVariantMap m_values;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray text(reinterpret_cast<const char*>(data), qsizetype(size));
    const std::optional<QVariantMap> values = JsonSettingsStore::parse(text);
    if (!values)
        return 0;
    ParsedStore store(*values);
    for (const QString& key : values->keys()) {
        (void)store.readBool(key);
        (void)store.readInt(key);
        (void)store.readString(key);
    }
    // Whatever the file holds, a contact read from it is of its shape, and reads back the same once written.
    QStringList problems;
    for (const BridgeContact& contact : Preferences(store).bridges(&problems)) {
        if ((!contact.id.isEmpty() && !BridgeIdentity::isBridgeId(contact.id)) ||
            (!contact.certificate.isEmpty() && contact.certificate.size() != 32) ||
            BridgeContact::fromJson(contact.toJson()) != contact)
            __builtin_trap();
    }
    return 0;
}
