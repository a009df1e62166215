<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en">
<context>
    <name>ActionQueue</name>
    <message>
        <source>The bridge refused the change: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge answered with an error (HTTP %1)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge&apos;s answer could not be read</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>AppDelegate</name>
    <message>
        <source>No program to open this page could be started. Open it yourself:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bulb</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rays</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Beams</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Glow</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>General</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lights</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hotkeys</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Settings could not be saved: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This desktop shows no system tray, so Glowdeck opens here. For a lamp icon in the panel, the desktop needs a tray (on GNOME, the AppIndicator extension). Closing this window keeps Glowdeck running for its shortcuts; starting Glowdeck again brings the window back.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Darkness!</source>
        <extracomment>The command that switches every lamp off, named like a scene: its text may stay as it is.</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>Off in %n minutes</source>
        <translation>
            <numerusform>Off in %n minute</numerusform>
            <numerusform>Off in %n minutes</numerusform>
        </translation>
    </message>
    <message>
        <source>Lights off at %1 — Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Help</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Provide feedback</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quit Glowdeck</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Welcome to Glowdeck</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>AppWindow</name>
    <message>
        <source>Hide this note</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>BodyView</name>
    <message>
        <source>settings</source>
        <extracomment>The word of the empty lists&apos; hints that becomes a link to the settings: write it exactly as it appears in their translations.</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Okay, we&apos;re not able to detect any lights just yet.

Have you opened the settings and connected to the bridge?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There aren&apos;t any rooms visible just yet.

Have you opened the settings and connected to the bridge?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There aren&apos;t any scenes visible just yet.

Have you opened the settings and connected to the bridge?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge at %1 does not answer.

Glowdeck keeps trying and shows your %2 as soon as it does. Is the bridge switched on and on this network? The settings show the connection.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>lights</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>rooms</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>scenes</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>BridgeAddress</name>
    <message>
        <source>The bridge address is empty.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A bridge address is HOST, HOST:PORT, https://HOST[:PORT] or http://HOST[:PORT], without a path: %1 is not one.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The IPv6 address in %1 has no closing bracket.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 has something after the IPv6 address.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 ends in &apos;:&apos; without a port.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is not an IPv6 address.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>An IPv6 address goes in brackets: [%1].</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is not a host name or address.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is not a port (1 to 65535).</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>BridgeConnection</name>
    <message>
        <source>We were unable to find any devices</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge does not know Glowdeck&apos;s key: press its link button, then Connect</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge refused to list the lights: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge answered with an error (HTTP %1)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge sent more than 1,000 lights</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge&apos;s answer could not be read</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>BridgeNetwork</name>
    <message>
        <source>The bridge at %1 presented no certificate.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge at %1 presented a certificate for another bridge (%2).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge at %1 presented a certificate that is not a Hue bridge&apos;s.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge at %1 presented a different certificate than when it was paired: pair again to trust it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge at %1 presented a certificate that is not signed by the bridge maker: pair again to trust it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge at %1 presented an expired certificate.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge at %1 presented a certificate that is not valid yet (is this computer&apos;s clock right?).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge&apos;s key was not sent to %1: the bridge there has not proved which bridge it is yet.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge&apos;s key was not sent to %1 over plain HTTP: bridge %2 was paired over HTTPS.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>BridgePairing</name>
    <message>
        <source>Bridge responded: Press LINK BUTTON and retry</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to connect to the Hue bridge. Is the IP address correct?</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>BridgeSection</name>
    <message>
        <source>Bridge %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show or hide the bridge %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This bridge does not answer.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No rooms on this bridge.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No scenes on this bridge.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No lights on this bridge.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ConfigurationPart</name>
    <message>
        <source>Automatic</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Manual</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connect</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>IP address of your Hue bridge</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Detecting…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connecting…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No bridge found yet.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bridge at %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%n bridges found.</source>
        <translation>
            <numerusform>%n bridge found.</numerusform>
            <numerusform>%n bridges found.</numerusform>
        </translation>
    </message>
    <message>
        <source>Detect and pair</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Finds the bridge on your network and asks it to pair at once: press its link button first.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ConnectionBanner</name>
    <message>
        <source>Bridge not reachable — retrying</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Settings could not be saved: %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ConnectionPane</name>
    <message>
        <source>Remove the bridge %1? Glowdeck forgets its key and stops showing its lights; to use it again, pair it again with its link button.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove bridge</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ConnectionView</name>
    <message>
        <source>Several bridges answered. Pick yours:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Use this bridge</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bridges found</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connect to a Hue bridge</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connection status</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>It moved from %1 to %2 and was found there by itself.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Click Glowdeck&apos;s lamp icon (or open its window) and you should see your lights now. If not, you can try to re-connect.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge at %1 does not answer. Glowdeck keeps its key and keeps trying, and looks for the bridge on your network in case it moved. Check that the bridge has power and is connected to your router.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Glowdeck sent nothing to %1, not even its key. Pairing again is not the fix: it would trust whatever answers there. Detect finds your bridge if it moved; pair again only with a bridge you reset or replaced yourself.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connection trouble? Click to send debug data!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Every bridge found is paired already.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>CONNECTED</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>NOT ANSWERING</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>NOT TRUSTED</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>DISCONNECTED</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bridge %1, over %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Over %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Live updates: the bridge tells of every change</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reading every 3.5 s</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Disconnect</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connecting…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connect</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hue bridge</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 at %2 (%3)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Thank you!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Glowdeck is not paired with a Hue bridge yet. Press the round link button on the bridge, then click &quot;Detect and pair&quot; below: it finds the bridge and asks it to pair at once. Or choose Manual, type the bridge&apos;s address and click Connect.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>You need to press the link button on your bridge before clicking &quot;Detect and pair&quot; or Connect.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ControlRow</name>
    <message>
        <source>%1 brightness</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 colour</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 white tone</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DebugView</name>
    <message>
        <source>Send debug data</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show report</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Debug information</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>When Glowdeck cannot find or reach your bridge, a debug report helps to find out why. It holds the versions of Glowdeck, Qt and your system, your settings and the last messages of the program (the bridge&apos;s key left out), and whether the bridge answers. It is saved on this computer, where you can read it, and sent to the developers unless error reports are switched off.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close the window</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Collecting…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Thank you!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No report could be made; the reason is in the program&apos;s messages.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DesktopNotifications</name>
    <message>
        <source>Lights off at %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>All lights switch off in %n minute(s).</source>
        <translation>
            <numerusform>All lights switch off in %n minute.</numerusform>
            <numerusform>All lights switch off in %n minutes.</numerusform>
        </translation>
    </message>
    <message>
        <source>Lights off</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The switch-off timer went off.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>It answered with an error (HTTP %1).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Its answer could not be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge refused a change</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Found the bridge %1 again</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>It answers, and Glowdeck shows its lights as they are now.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lost the bridge %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>It does not answer. Glowdeck keeps trying, and looks for it on your network in case it moved.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>GroupActionPicker</name>
    <message>
        <source>%1 (room not found)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>HeightGrip</name>
    <message>
        <source>Resize</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drag to change the height, or at the corner the size</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>HotkeyActions</name>
    <message>
        <source>On</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Off</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Brighter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Darker</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>(No action)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 (zone)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>HotkeyNames</name>
    <message>
        <source>Switch every room on</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Switch every room off</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Make every room brighter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Make every room darker</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Turn every room red</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Turn every room blue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Turn every room white</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Room action 1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Room action 2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Room action 3</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Room action 4</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Room action 5</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open Glowdeck</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>HotkeyView</name>
    <message>
        <source>Everything</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Individual groups</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Small</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Medium</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Large</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shortcuts</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Step size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hotkey settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&lt;p&gt;&lt;b&gt;Global shortcuts are not available on this desktop.&lt;/b&gt;&lt;/p&gt;&lt;p&gt;Glowdeck registers them with X11 or, on Wayland, through the desktop portal&apos;s global shortcuts service, and found neither here. Your desktop&apos;s own keyboard settings can run &lt;tt&gt;glowdeckctl&lt;/tt&gt; commands instead, such as &lt;tt&gt;glowdeckctl all-off&lt;/tt&gt;.&lt;/p&gt;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Details: %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>HotkeysEverythingView</name>
    <message>
        <source>All on</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>All off</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Brighter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Darker</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Red</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Blue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>White</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open Glowdeck</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>These act on every room at once, from any application. The last opens or closes Glowdeck&apos;s window.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>HotkeysIndividualView</name>
    <message>
        <source>Shortcut</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Room action</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shortcut %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Room action %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Each of these does one thing to one room. The rooms come from your bridges.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ImagePlayer</name>
    <message>
        <source>A finger presses the round link button in the middle of the bridge</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>InformationView</name>
    <message>
        <source>Want to help? A coffee is always appreciated.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>JsonSettingsStore</name>
    <message>
        <source>The settings file %1 was left empty by another program; the settings were saved anew</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The settings file %1 was changed into something that is not valid JSON; it was kept as %2, and the settings were saved anew</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The settings file %1 grew larger than 1 MiB; it was kept as %2, and the settings were saved anew</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>LampSelectorView</name>
    <message>
        <source>Move up</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move down</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No lights yet. Connect to your Hue bridge, and its lights are listed here.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open the connection settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lights</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drag a light to change the order.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Which lights do you want to control?</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Launcher</name>
    <message>
        <source>Glowdeck %1: Philips Hue lights from the system tray.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Read and write the settings in &lt;file&gt;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Run against a simulated bridge, with settings of its own.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Also trust the authority in &lt;file&gt; (PEM) for the bridge&apos;s certificate, beside the bridge maker&apos;s own (for a test bridge).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show Glowdeck in a window of its own rather than behind a tray icon (as on a desktop without a system tray).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Try glowdeck --help.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Glowdeck needs a graphical desktop session. Without one, use glowdeckctl (see README.md).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>glowdeck: also trusting %1 (%2) for the bridge&apos;s certificate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>glowdeck: already running with %1; its window was opened.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>glowdeck: another Glowdeck holds %1 but does not answer; end it first (or use --settings FILE).</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>LightsPane</name>
    <message>
        <source>Bridge:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bridge</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ListGroups</name>
    <message>
        <source>Zones</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ListScenes</name>
    <message>
        <source>Filter scenes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Type part of a scene&apos;s or a room&apos;s name. Escape clears it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No scene matches “%1”.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>PairedBridgeList</name>
    <message>
        <source>Add a bridge…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pair again</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Paired bridges</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ID</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Address</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Transport</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>State</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not paired</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>live</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>reading</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not answering</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not trusted</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>connecting</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New bridge</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>PaneTabController</name>
    <message>
        <source>Preference panes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Next pane</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Previous pane</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Preferences</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>PanelTabs</name>
    <message>
        <source>Lights</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rooms</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Scenes</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>PreferencesGeneralView</name>
    <message>
        <source>Run at start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show color bars for rooms</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show zones</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show scene panel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>App icon</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start Glowdeck when you log in.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Notifications</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tell the desktop when a timer went off, a bridge was lost or found again, or refused a change while the window was closed.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>PreferencesInformationView</name>
    <message>
        <source>Frequently asked questions</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Provide feedback</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Debug information…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Get support</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>PreferencesWindowController</name>
    <message>
        <source>Close the window</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QShortcut</name>
    <message>
        <source>Return</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Enter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tab</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Space</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Backspace</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Esc</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ins</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Del</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Home</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>End</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PgUp</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PgDown</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Right</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Up</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Down</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Meta</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ctrl</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Alt</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shift</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>F%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Num</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>RecorderField</name>
    <message>
        <source>Clear shortcut</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Record shortcut</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Press shortcut</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This shortcut cannot be used because Glowdeck already uses it for “%1”.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This shortcut cannot be used because it is already used by the system.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Your desktop or another running program has taken it. Most desktops let you change their own shortcuts in their keyboard settings.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No shortcut</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>RegularTitlebarView</name>
    <message>
        <source>Got a second?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Write a review</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SceneRooms</name>
    <message>
        <source>Other scenes</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SwitchOffNotice</name>
    <message>
        <source>All lights switch off at %1.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TitleBars</name>
    <message>
        <source>Settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Menu (Shift+F10)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Menu</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>WelcomeView</name>
    <message>
        <source>Let&apos;s go!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This app is very minimal. It lives in the panel: click its lamp icon to start.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This app is very minimal. This desktop has no tray for its icon, so it opens in a small window of its own.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
