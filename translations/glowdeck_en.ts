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
    <message>
        <source>The bridge took only part of the change: %1</source>
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
    <message>
        <source>interface v2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>interface v1 (older bridge)</source>
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
    <message>
        <source>%1 colour and white tone</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show or hide the colour and white tone of %1</source>
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
    <name>DesktopBusService</name>
    <message>
        <source>Another program holds the name %1 on the session bus.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>bridge_id takes a string.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No bridge %1 is served.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 takes a number from %2 to %3.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>on takes a boolean.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>xy takes two numbers from 0 to 1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unknown field %1; a change takes on, brightness, brightness_step, xy, mirek, hue and bridge_id.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The change of the room changes nothing.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The change of the lamp changes nothing.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No %1 has the id or name %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 names several: %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Give the id, and bridge_id.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>lamp</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The lamp %1 cannot be dimmed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>room</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unknown option %1; a scene takes bridge_id.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>scene</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>SwitchOffIn takes a number of minutes from 1 to 1440.</source>
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
    <message>
        <source>The bridge took only part of a change</source>
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
    <message>
        <source>zone</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>room</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%1, %n lamps</source>
        <translation>
            <numerusform>%1, %n lamp</numerusform>
            <numerusform>%1, %n lamps</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 — %2</source>
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
    <message>
        <source>Filter rooms</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Type part of a room&apos;s name to shorten the lists of room actions.</source>
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
    <message>
        <source>Filter rooms</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Type part of a room&apos;s or a zone&apos;s name. Escape clears it.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ListLights</name>
    <message>
        <source>Filter lamps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Type part of a lamp&apos;s name. Escape clears it.</source>
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
        <source>This desktop shows no system tray, so Glowdeck opens in a window of its own. For a lamp icon in the panel, the desktop needs a tray (on GNOME, the AppIndicator extension). Closing the window keeps Glowdeck running for its shortcuts; starting Glowdeck again brings it back.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>glowdeck-simulator</name>
    <message numerus="yes">
        <source>--%1 takes one value for every bridge, or one for each: %2 given for %n bridges</source>
        <translation>
            <numerusform>--%1 takes one value for every bridge, or one for each: %2 given for %n bridge</numerusform>
            <numerusform>--%1 takes one value for every bridge, or one for each: %2 given for %n bridges</numerusform>
        </translation>
    </message>
    <message>
        <source>--%1 needs a number from 0 to 65535, not &quot;%2&quot;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Simulates Philips Hue bridges (version-1 REST interface; version-2 interface and event stream over HTTPS) on local ports. The options marked [each] apply to every bridge when given once, or to each bridge in turn when given once per bridge.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Run N bridges (1 to %1; default: one per --bridge-id, else 1), each with its own id, ports, home, users and event stream: the first on the ground floor&apos;s default home, the second on the upper floor&apos;s.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>[each] Port to listen on (default 0: any free port). Given once for several bridges, N, N+1, ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Address to listen on (default 127.0.0.1).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>[each] Load the home from FILE.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Write the home (the default one, or the --home one) to FILE and exit; once per bridge.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Register the user NAME on every bridge (may be repeated).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Press the link buttons at start (pairing works for 30 s). Press them later with SIGUSR1, or one with a POST to its /__control/linkbutton from loopback.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Accept every pairing request without the link button.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>[each] Delay every answer by MS milliseconds.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Print every request received.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>[each] Serve HTTPS on port N as well (0: any free port; given once for several bridges, N, N+1, ...).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>[each] The certificate HTTPS clients see: signed (default), self-signed, other-bridge, expired or unknown-authority.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge id (16 hexadecimal digits); once per bridge, each its own.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Write the authority that signs the certificates (one for every bridge) to FILE (PEM), for a client to trust.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Answer plain HTTP with 301 to HTTPS, as the newest bridge does.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Serve HTTPS only (with --tls-port).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>[each] The event stream of HTTPS (GET /eventstream/clip/v2): normal (default: every change, also those sent with POST /__control/external/&lt;v1 path&gt; from loopback), silent (keep-alives only), off (404, as old firmware) or malformed (broken events).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>[each] End every event stream after N seconds, as busy bridges do (default 0: never).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>[each] As a bridge kept busy by another app: from the first change (PUT, POST or DELETE) it takes, answer every further change with 429 Too Many Requests for N seconds, then take them again; reads are answered all along (default 0: never). --busy-for N --busy-for 0 makes the first of two bridges busy.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Serve no version-2 interface: every /clip/v2/ path answers 404, as on a bridge with old firmware. Without it HTTPS serves GET and PUT /clip/v2/resource/... with the header hue-application-key, from the same home as version 1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>[each] From the first version-2 write it takes, answer every further one with --v2-busy-status for N seconds; reads are answered all along (default 0: never).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The status of --v2-busy-for: 429 (default, over the budget) or 503 (busy).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Answer a version-2 write of a room, zone or the whole home 207 when some of its lamps cannot be reached: those stay as they are and are named in &quot;errors&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Answer every version-2 write with 400 and the error TEXT, changing nothing.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Enforce the bridge&apos;s pace over version 2: a light takes a write every 100 ms, a grouped light one a second; sooner ones are answered 429.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>unexpected argument %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--bridges needs a number from 1 to %1, not &quot;%2&quot;</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>--%1 takes one value for each bridge: %2 given for %n bridges</source>
        <translation>
            <numerusform>--%1 takes one value for each bridge: %2 given for %n bridge</numerusform>
            <numerusform>--%1 takes one value for each bridge: %2 given for %n bridges</numerusform>
        </translation>
    </message>
    <message>
        <source>--bind needs an IP address, not &quot;%1&quot;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--no-http, --redirect-http, --write-authority, --event-stream and --event-stream-lifetime go with --tls-port</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--v2-busy-status is 429 or 503, not &quot;%1&quot;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--latency needs milliseconds from 0 to 600000, not &quot;%1&quot;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--event-stream is one of %1, not &quot;%2&quot;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--event-stream-lifetime needs seconds from 0 to 86400, not &quot;%1&quot;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--busy-for needs seconds from 0 to 86400, not &quot;%1&quot;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--v2-busy-for needs seconds from 0 to 86400, not &quot;%1&quot;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--certificate is one of %1, not &quot;%2&quot;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--bridge-id needs 16 hexadecimal digits, not &quot;%1&quot;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>two bridges would have the id %1: give each its own with --bridge-id</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--user &quot;%1&quot; is not a usable user name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> on bridge %1</source>
        <comment>Completes &quot;Link button pressed (%1)%2&quot;</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Link button pressed (%1)%2: pairing works for the next 30 s</source>
        <comment>%1 is the signal or request that pressed it, %2 the bridge or nothing</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> on every bridge</source>
        <comment>Completes &quot;Link button pressed (%1)%2&quot;</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hue bridge simulator listening on %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hue bridge simulator listening for HTTPS on %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>--%1 %2 leaves no room for a row of %n ports</source>
        <translation>
            <numerusform>--%1 %2 leaves no room for a row of %n port</numerusform>
            <numerusform>--%1 %2 leaves no room for a row of %n ports</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>glowdeckctl</name>
    <message>
        <source>Glowdeck refused: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Glowdeck serves no bridge %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The lights go off at %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>switch on</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>switch off</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> or 0%-100% (4 or 1% or less switches off)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> (colour; the lamp keeps its saturation)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> mired (white tone; higher is warmer)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> or 1%-100% (rooms only: raise the brightness by N)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> or 1%-100% (rooms only: lower the brightness by N)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unexpected argument %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 takes a whole number from %2 to %3</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1, not %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1; %2 is out of range.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&apos;light&apos; needs a lamp id.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The lamp id must not be empty.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unknown change %1 for a lamp; use %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&apos;room&apos; needs a room id.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The room id must not be empty.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unknown change %1 for a room; use %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&apos;scene&apos; needs a scene id.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The scene id must not be empty.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&apos;%1 %2&apos; needs a change: %3.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&apos;%1&apos; needs a number from %2 to %3.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> in per cent</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>List the lamps: id, name, on/off, brightness, kind, product</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>List the rooms and zones: id, name, type, on/off, brightness, lamp ids</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>List the scenes: id, name, room, type, number of lamps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Change one lamp, named by its id or name (see CHANGE below)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Change one room or zone, by its id or name (see CHANGE below)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Recall a scene, named by its id or name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Switch every lamp on, with one request per bridge</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Switch every lamp off, with one request per bridge; with --in, say when</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Find the bridges on this network and show them; --pick ID stores that one&apos;s address</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Get a key from the bridge (press its link button); store it beside the other bridges</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show each paired bridge and whether it answers (--json too)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Print each change of a lamp or room as the bridge pushes it, until Ctrl+C (--json too)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>List the global shortcuts, their keys and what each does (--json too)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> or </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Numbers are never negative here, not %1 (a room gets dimmer with &apos;darker N&apos;).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--%1 is given more than once.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--with-key is no more: the records carry no key. The key is stored in the settings file (%1).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No command given.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unknown command %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--%1 goes with %2 only, not with %3.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--pick takes a bridge id (16 hexadecimal digits, as discover lists them), not %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--bridge-id takes a bridge id (16 hexadecimal digits, as status lists them), not %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>pair takes --pick, or --bridge and --bridge-id, not both.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--discovery-url takes an http or https URL (an empty one switches the service off), not %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--bridge takes HOST, HOST:PORT, https://HOST[:PORT] or http://HOST[:PORT], not %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--key takes the bridge&apos;s key (letters, digits, &apos;-&apos;, &apos;_&apos;, &apos;.&apos;, &apos;~&apos;), not %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--settings takes a file name.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>glowdeckctl: %1
Try &apos;glowdeckctl --help&apos;.
</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Usage: glowdeckctl [OPTIONS] COMMAND [ARGUMENTS]

</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Controls the Philips Hue lamps of the bridges Glowdeck is paired with.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Commands:
</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>
CHANGE of light and room:
</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>
Options:
</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>talk to the bridges even while Glowdeck runs (lists, changes, all-on, all-off); otherwise these go through the running Glowdeck, whose window shows them at once</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>bridge address for this run (HOST, HOST:PORT, https://HOST[:PORT] or http://HOST[:PORT]); only pair stores it (once it has a key)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the paired bridge for this run; without it lists, watch, status, all-on and all-off serve every paired bridge, and a change the bridge with its id or name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>bridge key for this run (not stored)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>settings file holding the paired bridges; default $GLOWDECK_SETTINGS, else </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>also trust this authority (PEM) for the bridge&apos;s certificate (a test bridge)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>lights, rooms, scenes, discover: print the records as one JSON array, each with its &quot;bridge_id&quot;; status: one JSON object; watch: each change as one JSON object a line, with the field names of the lists</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>all-off: have the bridge switch off in %1 minutes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>pair: keep asking every second for SECONDS (%1) while you press the link button</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>discover: the discovery service to ask; default $GLOWDECK_DISCOVERY_URL, else Philips&apos; public service; an empty URL asks no service</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>discover, pair: the bridge found with this id, when several answer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>show this help</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>show the version</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Each bridge&apos;s address and key are kept in the settings file: &apos;discover --pick ID&apos; stores the address, &apos;pair&apos; the key, and the other commands use them. A lamp, room or scene is named by its id or, when no record has that id, by its name; an id found on several paired bridges needs --bridge-id.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A change is done once the bridge has answered it, or once the running Glowdeck has queued it; every wait is bounded (a list 10 s, a change 5 s, pairing and discovery 15 s). watch runs until Ctrl+C (or SIGTERM), then exits 0.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Exit status: 0 done; 1 no bridge was found, or it could not be reached, paired with or used, it refused or did not answer a change, no lamp, room or scene has that id or name (or there is no event stream to watch), or the settings file could not be written (a list still shows the bridges that answered); 2 bad command line, a --bridge-id that is not paired, or an id or name that fits several (nothing is sent).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>none is</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>paired: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No bridge %1 is paired in %2; %3.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--key is the key of one bridge: name it with --bridge-id or --bridge.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No bridge address and key</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No bridge address</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No bridge key</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stored in %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>known: there is no settings file %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 %2.
Run &apos;glowdeckctl discover&apos; and &apos;glowdeckctl pair&apos; first, or pass --bridge HOST[:PORT] and --key KEY.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge address %1 is not HOST[:PORT] or https://HOST[:PORT].</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The key stored in %1 goes only to bridge %2. For another bridge pass --key KEY, or pair with it: glowdeckctl pair --bridge %3</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>at %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bridge %1 at %2 was paired over HTTPS; its key is not sent over plain HTTP.
%3</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 does not say which bridge its key belongs to, so it goes to %2 only; the bridge at %3 cannot prove to be that bridge.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bridge %1 was paired over plain HTTP, so its key goes to %2 only, not to %3.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The key of bridge %1 is not sent over plain HTTP, where %2 cannot prove to be that bridge.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge at %1 refused %2: %3.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge at %1 answered %2 with HTTP status %3.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge at %1 answered %2 with something that is not a Hue bridge&apos;s answer; the change may not have been made.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge at %1 did not answer %2 in time (%3 s without data, or %4 s in all); the change may not have been made.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge at %1 did not answer %2: %3.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This command is not run here.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bridge %1 is missing from the list.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nothing was sent: a bridge that did not answer may have a light %1 too; name the bridge with --bridge-id ID.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nothing was sent: a bridge that did not answer may have a room %1 too; name the bridge with --bridge-id ID.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nothing was sent: a bridge that did not answer may have a scene %1 too; name the bridge with --bridge-id ID.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The lights go off at %1.
</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nothing was sent to the bridge.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Gave up: the Hue bridge at %1 made no progress for %2 seconds.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--trust-root: %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>also trusting %1 (%2) for the bridge&apos;s certificate.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No Hue bridge found on this network.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A bridge whose address you know: glowdeckctl pair --bridge HOST[:PORT]</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Found a Hue bridge at %1: %2 (%3).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No bridge %1 answered; nothing was stored.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nothing was stored; store a bridge&apos;s address with: glowdeckctl discover --pick ID</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Several bridges answered; pair with yours with: glowdeckctl pair --pick ID</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A bridge was reported at %1, which is not HOST[:PORT]; nothing was stored.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Its address was not stored: %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stored %1 as the bridge address in %2; next: glowdeckctl pair</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No bridge %1 is stored in %2; pair it with --pick %1 or --bridge HOST[:PORT].</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No bridge address stored in %1.
Run &apos;glowdeckctl discover&apos; first, or pass --bridge HOST[:PORT].</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The stored bridge address %1 is not HOST[:PORT]; run &apos;glowdeckctl discover&apos; or pass --bridge.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Press the link button on the bridge at %1; waiting up to %2 seconds.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge at %1 gave a key, but reading its lamps failed (%2); nothing was stored.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Paired with bridge %1 at %2 over %3: %4, %5, %6.</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%n lights</source>
        <translation>
            <numerusform>%n light</numerusform>
            <numerusform>%n lights</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n rooms</source>
        <translation>
            <numerusform>%n room</numerusform>
            <numerusform>%n rooms</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n scenes</source>
        <translation>
            <numerusform>%n scene</numerusform>
            <numerusform>%n scenes</numerusform>
        </translation>
    </message>
    <message>
        <source>The key was not stored, so it is lost: %1.
Make the settings file writable (or pass --settings FILE) and pair again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stored its address and key in %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No bridge %1 is paired in %2; stored: %3.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bridge</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no bridge address stored; run glowdeckctl discover</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the stored address is not HOST[:PORT]; run glowdeckctl discover</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bridge id</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Transport</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>answers; no key yet: run glowdeckctl pair</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>answers (%1)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Interface</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>unknown (the bridge is busy)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>answers, but sent no lamps for this key; run glowdeckctl pair</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>answers too slowly: gave up on its lamps after %1 s</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>does not answer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>answers, but its lamps cannot be read</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no event stream over plain HTTP</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the event stream did not answer within %1 s</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Updates</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>live updates (the bridge pushes its changes)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>reading every %1 s (%2)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Settings file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> (not there yet)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Glowdeck</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>running: lists and changes go through it</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not running with this settings file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bridge name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bridge address</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> (from --bridge)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Key stored</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>yes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> (this run uses --key)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>bridge %1, not stored</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the first bridge</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>room %1 on</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>room %1 off</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>room %1 brighter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>room %1 darker</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>nothing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>nothing (&quot;%1&quot; is no room action)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>every room on</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>every room off</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>every room brighter by %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>every room darker by %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>every room red</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>every room blue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>every room white</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>open or close the Glowdeck window</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>(unreadable)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>NAME</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>KEYS</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ACTION</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>STATE</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>BRIGHTNESS</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>KIND</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PRODUCT</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>TYPE</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>LIGHTS</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ROOM</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nothing was sent; name one with --bridge-id ID.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> on %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The name %1 fits several: %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nothing was sent; name it by its id.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>BRIDGE</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No light with the id or name %1 on this bridge.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No light with the id or name %1 on any paired bridge.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is a light %1 on several paired bridges: %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No room with the id or name %1 on this bridge.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No room with the id or name %1 on any paired bridge.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is a room %1 on several paired bridges: %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No scene with the id or name %1 on this bridge.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No scene with the id or name %1 on any paired bridge.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is a scene %1 on several paired bridges: %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the bridge at %1 is reached over plain HTTP, and its event stream needs HTTPS; glowdeckctl lists show its state</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>names not read again: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>watching the bridge at %1; Ctrl+C ends</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>event stream of the bridge at %1 open again; changes made meanwhile are not told</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>event stream: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>event stream lost: %1; reconnecting</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>event stream not opened: %1; trying again</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the bridge offers no event stream (%1); glowdeckctl lists show its state</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>bridge %1 is not watched</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The bridge at %1 took only part of %2: %3.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
