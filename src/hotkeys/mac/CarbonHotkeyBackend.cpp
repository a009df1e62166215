#include "hotkeys/HotkeyBackend.h"

#include <QHash>

#include <Carbon/Carbon.h>

namespace {

using Shortcut = GlobalHotkeys::Shortcut;

// The signature of our hot-key identifiers, "GDHK": events carrying another belong to someone else.
constexpr OSType hotKeySignature = 0x4744484B;

/// Global shortcuts with the Carbon event manager's hot keys. The stored encoding is Carbon's own, so key
/// codes and modifiers go to the system as they are.
class CarbonHotkeyBackend final : public HotkeyBackend
{
public:
    ~CarbonHotkeyBackend() override
    {
        for (const EventHotKeyRef ref : std::as_const(m_hotKeys))
            UnregisterEventHotKey(ref);
        if (m_handler)
            RemoveEventHandler(m_handler);
    }

    bool registerHotKey(quint32 id, const Shortcut& shortcut, const QString&) override
    {
        EventHotKeyRef ref = nullptr;
        const EventHotKeyID hotKeyId{hotKeySignature, UInt32(id)};
        const OSStatus status =
            RegisterEventHotKey(UInt32(shortcut.carbonKeyCode), UInt32(shortcut.carbonModifiers), hotKeyId,
                                GetEventDispatcherTarget(), 0, &ref);
        // Another application may own the combination already: then it simply does not work.
        if (status != noErr || !ref)
            return false;
        m_hotKeys.insert(id, ref);
        if (!m_handler) {
            const EventTypeSpec types[] = {{kEventClassKeyboard, kEventHotKeyPressed},
                                           {kEventClassKeyboard, kEventHotKeyReleased}};
            InstallEventHandler(GetEventDispatcherTarget(), &CarbonHotkeyBackend::handleEvent, 2, types, this,
                                &m_handler);
        }
        return true;
    }

    void unregisterHotKey(quint32 id) override
    {
        if (const EventHotKeyRef ref = m_hotKeys.take(id))
            UnregisterEventHotKey(ref);
    }

    bool isTakenBySystem(const Shortcut& shortcut) const override
    {
        CFArrayRef symbolic = nullptr;
        if (CopySymbolicHotKeys(&symbolic) != noErr || !symbolic)
            return false;
        bool taken = false;
        for (CFIndex i = 0; i < CFArrayGetCount(symbolic) && !taken; ++i) {
            const auto entry = static_cast<CFDictionaryRef>(CFArrayGetValueAtIndex(symbolic, i));
            const auto enabled =
                static_cast<CFBooleanRef>(CFDictionaryGetValue(entry, kHISymbolicHotKeyEnabled));
            if (!enabled || CFGetTypeID(enabled) != CFBooleanGetTypeID() || !CFBooleanGetValue(enabled))
                continue;
            const auto code = static_cast<CFNumberRef>(CFDictionaryGetValue(entry, kHISymbolicHotKeyCode));
            const auto modifiers =
                static_cast<CFNumberRef>(CFDictionaryGetValue(entry, kHISymbolicHotKeyModifiers));
            SInt64 keyCode = -1;
            SInt64 modifierBits = 0;
            if (!code || !modifiers || !CFNumberGetValue(code, kCFNumberSInt64Type, &keyCode) ||
                !CFNumberGetValue(modifiers, kCFNumberSInt64Type, &modifierBits))
                continue;
            taken = keyCode == shortcut.carbonKeyCode &&
                    (modifierBits & Shortcut::allModifiers) == shortcut.carbonModifiers;
        }
        CFRelease(symbolic);
        return taken;
    }

private:
    static OSStatus handleEvent(EventHandlerCallRef, EventRef event, void* data)
    {
        if (!event)
            return eventNotHandledErr;
        EventHotKeyID hotKeyId;
        const OSStatus status = GetEventParameter(event, kEventParamDirectObject, typeEventHotKeyID, nullptr,
                                                  sizeof hotKeyId, nullptr, &hotKeyId);
        if (status != noErr)
            return status;
        auto* self = static_cast<CarbonHotkeyBackend*>(data);
        if (hotKeyId.signature != hotKeySignature || !self->m_hotKeys.contains(hotKeyId.id))
            return eventNotHandledErr;
        switch (GetEventKind(event)) {
        case kEventHotKeyPressed:
            Q_EMIT self->pressed(hotKeyId.id);
            return noErr;
        case kEventHotKeyReleased:
            Q_EMIT self->released(hotKeyId.id);
            return noErr;
        default:
            return eventNotHandledErr;
        }
    }

    QHash<quint32, EventHotKeyRef> m_hotKeys;
    EventHandlerRef m_handler = nullptr; // installed with the first hot key, kept for the run
};

} // namespace

std::unique_ptr<HotkeyBackend> createHotkeyBackend(const QString&)
{
    return std::make_unique<CarbonHotkeyBackend>();
}
