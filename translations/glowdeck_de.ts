<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>ActionQueue</name>
    <message>
        <source>The bridge refused the change: %1</source>
        <translation>Die Bridge hat die Änderung abgelehnt: %1</translation>
    </message>
    <message>
        <source>The bridge answered with an error (HTTP %1)</source>
        <translation>Die Bridge hat mit einem Fehler geantwortet (HTTP %1)</translation>
    </message>
    <message>
        <source>The bridge&apos;s answer could not be read</source>
        <translation>Die Antwort der Bridge konnte nicht gelesen werden</translation>
    </message>
</context>
<context>
    <name>AppDelegate</name>
    <message>
        <source>No program to open this page could be started. Open it yourself:</source>
        <translation>Es konnte kein Programm gestartet werden, das diese Seite öffnet. Bitte selbst öffnen:</translation>
    </message>
    <message>
        <source>Bulb</source>
        <translation>Glühbirne</translation>
    </message>
    <message>
        <source>Rays</source>
        <translation>Strahlen</translation>
    </message>
    <message>
        <source>Beams</source>
        <translation>Lichtkegel</translation>
    </message>
    <message>
        <source>Glow</source>
        <translation>Schein</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>Connection</source>
        <translation>Verbindung</translation>
    </message>
    <message>
        <source>Lights</source>
        <translation>Lampen</translation>
    </message>
    <message>
        <source>Hotkeys</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>Settings could not be saved: %1</source>
        <translation>Die Einstellungen konnten nicht gespeichert werden: %1</translation>
    </message>
    <message>
        <source>This desktop shows no system tray, so Glowdeck opens here. For a lamp icon in the panel, the desktop needs a tray (on GNOME, the AppIndicator extension). Closing this window keeps Glowdeck running for its shortcuts; starting Glowdeck again brings the window back.</source>
        <translation>Diese Arbeitsumgebung zeigt keine Systemleiste, daher öffnet sich Glowdeck hier. Für ein Lampensymbol in der Leiste braucht die Arbeitsumgebung eine Systemleiste (unter GNOME die Erweiterung AppIndicator). Wird dieses Fenster geschlossen, läuft Glowdeck für seine Tastenkürzel weiter; ein erneuter Start von Glowdeck holt das Fenster zurück.</translation>
    </message>
    <message>
        <source>Darkness!</source>
        <extracomment>The command that switches every lamp off, named like a scene: its text may stay as it is.</extracomment>
        <translation>Darkness!</translation>
    </message>
    <message numerus="yes">
        <source>Off in %n minutes</source>
        <translation>
            <numerusform>Aus in %n Minute</numerusform>
            <numerusform>Aus in %n Minuten</numerusform>
        </translation>
    </message>
    <message>
        <source>Lights off at %1 — Cancel</source>
        <translation>Licht aus um %1 — Abbrechen</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Provide feedback</source>
        <translation>Rückmeldung geben</translation>
    </message>
    <message>
        <source>Quit Glowdeck</source>
        <translation>Glowdeck beenden</translation>
    </message>
    <message>
        <source>Welcome to Glowdeck</source>
        <translation>Willkommen bei Glowdeck</translation>
    </message>
</context>
<context>
    <name>AppWindow</name>
    <message>
        <source>Hide this note</source>
        <translation>Diesen Hinweis ausblenden</translation>
    </message>
</context>
<context>
    <name>BodyView</name>
    <message>
        <source>settings</source>
        <extracomment>The word of the empty lists&apos; hints that becomes a link to the settings: write it exactly as it appears in their translations.</extracomment>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Okay, we&apos;re not able to detect any lights just yet.

Have you opened the settings and connected to the bridge?</source>
        <translation>Es wurden noch keine Lampen gefunden.

Sind die Einstellungen geöffnet und ist die Bridge verbunden?</translation>
    </message>
    <message>
        <source>There aren&apos;t any rooms visible just yet.

Have you opened the settings and connected to the bridge?</source>
        <translation>Es sind noch keine Räume sichtbar.

Sind die Einstellungen geöffnet und ist die Bridge verbunden?</translation>
    </message>
    <message>
        <source>There aren&apos;t any scenes visible just yet.

Have you opened the settings and connected to the bridge?</source>
        <translation>Es sind noch keine Szenen sichtbar.

Sind die Einstellungen geöffnet und ist die Bridge verbunden?</translation>
    </message>
    <message>
        <source>The bridge at %1 does not answer.

Glowdeck keeps trying and shows your %2 as soon as it does. Is the bridge switched on and on this network? The settings show the connection.</source>
        <translation>Die Bridge unter %1 antwortet nicht.

Glowdeck versucht es weiter und zeigt die %2, sobald sie antwortet. Ist die Bridge eingeschaltet und in diesem Netzwerk? Die Einstellungen zeigen die Verbindung.</translation>
    </message>
    <message>
        <source>lights</source>
        <translation>Lampen</translation>
    </message>
    <message>
        <source>rooms</source>
        <translation>Räume</translation>
    </message>
    <message>
        <source>scenes</source>
        <translation>Szenen</translation>
    </message>
</context>
<context>
    <name>BridgeAddress</name>
    <message>
        <source>The bridge address is empty.</source>
        <translation>Die Adresse der Bridge ist leer.</translation>
    </message>
    <message>
        <source>A bridge address is HOST, HOST:PORT, https://HOST[:PORT] or http://HOST[:PORT], without a path: %1 is not one.</source>
        <translation>Eine Bridge-Adresse lautet HOST, HOST:PORT, https://HOST[:PORT] oder http://HOST[:PORT], ohne Pfad: %1 ist keine.</translation>
    </message>
    <message>
        <source>The IPv6 address in %1 has no closing bracket.</source>
        <translation>Der IPv6-Adresse in %1 fehlt die schließende Klammer.</translation>
    </message>
    <message>
        <source>%1 has something after the IPv6 address.</source>
        <translation>In %1 folgt etwas auf die IPv6-Adresse.</translation>
    </message>
    <message>
        <source>%1 ends in &apos;:&apos; without a port.</source>
        <translation>%1 endet auf „:“ ohne Port.</translation>
    </message>
    <message>
        <source>%1 is not an IPv6 address.</source>
        <translation>%1 ist keine IPv6-Adresse.</translation>
    </message>
    <message>
        <source>An IPv6 address goes in brackets: [%1].</source>
        <translation>Eine IPv6-Adresse steht in eckigen Klammern: [%1].</translation>
    </message>
    <message>
        <source>%1 is not a host name or address.</source>
        <translation>%1 ist kein Rechnername und keine Adresse.</translation>
    </message>
    <message>
        <source>%1 is not a port (1 to 65535).</source>
        <translation>%1 ist kein Port (1 bis 65535).</translation>
    </message>
</context>
<context>
    <name>BridgeConnection</name>
    <message>
        <source>We were unable to find any devices</source>
        <translation>Es wurden keine Geräte gefunden</translation>
    </message>
    <message>
        <source>The bridge does not know Glowdeck&apos;s key: press its link button, then Connect</source>
        <translation>Die Bridge kennt den Schlüssel von Glowdeck nicht: die Link-Taste drücken, dann „Verbinden“</translation>
    </message>
    <message>
        <source>The bridge refused to list the lights: %1</source>
        <translation>Die Bridge hat die Liste der Lampen verweigert: %1</translation>
    </message>
    <message>
        <source>The bridge answered with an error (HTTP %1)</source>
        <translation>Die Bridge hat mit einem Fehler geantwortet (HTTP %1)</translation>
    </message>
    <message>
        <source>The bridge sent more than 1,000 lights</source>
        <translation>Die Bridge hat mehr als 1.000 Lampen gesendet</translation>
    </message>
    <message>
        <source>The bridge&apos;s answer could not be read</source>
        <translation>Die Antwort der Bridge konnte nicht gelesen werden</translation>
    </message>
</context>
<context>
    <name>BridgeNetwork</name>
    <message>
        <source>The bridge at %1 presented no certificate.</source>
        <translation>Die Bridge unter %1 hat kein Zertifikat vorgelegt.</translation>
    </message>
    <message>
        <source>The bridge at %1 presented a certificate for another bridge (%2).</source>
        <translation>Die Bridge unter %1 hat ein Zertifikat für eine andere Bridge vorgelegt (%2).</translation>
    </message>
    <message>
        <source>The bridge at %1 presented a certificate that is not a Hue bridge&apos;s.</source>
        <translation>Die Bridge unter %1 hat ein Zertifikat vorgelegt, das nicht von einer Hue Bridge stammt.</translation>
    </message>
    <message>
        <source>The bridge at %1 presented a different certificate than when it was paired: pair again to trust it.</source>
        <translation>Die Bridge unter %1 hat ein anderes Zertifikat vorgelegt als bei der Kopplung: erneut koppeln, um ihm zu vertrauen.</translation>
    </message>
    <message>
        <source>The bridge at %1 presented a certificate that is not signed by the bridge maker: pair again to trust it.</source>
        <translation>Die Bridge unter %1 hat ein Zertifikat vorgelegt, das nicht vom Hersteller der Bridge signiert ist: erneut koppeln, um ihm zu vertrauen.</translation>
    </message>
    <message>
        <source>The bridge at %1 presented an expired certificate.</source>
        <translation>Die Bridge unter %1 hat ein abgelaufenes Zertifikat vorgelegt.</translation>
    </message>
    <message>
        <source>The bridge at %1 presented a certificate that is not valid yet (is this computer&apos;s clock right?).</source>
        <translation>Die Bridge unter %1 hat ein Zertifikat vorgelegt, das noch nicht gültig ist (geht die Uhr dieses Rechners richtig?).</translation>
    </message>
    <message>
        <source>The bridge&apos;s key was not sent to %1: the bridge there has not proved which bridge it is yet.</source>
        <translation>Der Schlüssel der Bridge wurde nicht an %1 gesendet: Die Bridge dort hat noch nicht nachgewiesen, welche Bridge sie ist.</translation>
    </message>
    <message>
        <source>The bridge&apos;s key was not sent to %1 over plain HTTP: bridge %2 was paired over HTTPS.</source>
        <translation>Der Schlüssel der Bridge wurde nicht unverschlüsselt per HTTP an %1 gesendet: Bridge %2 wurde über HTTPS gekoppelt.</translation>
    </message>
</context>
<context>
    <name>BridgePairing</name>
    <message>
        <source>Bridge responded: Press LINK BUTTON and retry</source>
        <translation>Antwort der Bridge: Link-Taste drücken und erneut versuchen</translation>
    </message>
    <message>
        <source>Unable to connect to the Hue bridge. Is the IP address correct?</source>
        <translation>Keine Verbindung zur Hue Bridge möglich. Ist die IP-Adresse richtig?</translation>
    </message>
</context>
<context>
    <name>BridgeSection</name>
    <message>
        <source>Bridge %1</source>
        <translation>Bridge %1</translation>
    </message>
    <message>
        <source>Show or hide the bridge %1</source>
        <translation>Bridge %1 ein- oder ausblenden</translation>
    </message>
    <message>
        <source>This bridge does not answer.</source>
        <translation>Diese Bridge antwortet nicht.</translation>
    </message>
    <message>
        <source>No rooms on this bridge.</source>
        <translation>Keine Räume auf dieser Bridge.</translation>
    </message>
    <message>
        <source>No scenes on this bridge.</source>
        <translation>Keine Szenen auf dieser Bridge.</translation>
    </message>
    <message>
        <source>No lights on this bridge.</source>
        <translation>Keine Lampen auf dieser Bridge.</translation>
    </message>
</context>
<context>
    <name>ConfigurationPart</name>
    <message>
        <source>Automatic</source>
        <translation>Automatisch</translation>
    </message>
    <message>
        <source>Manual</source>
        <translation>Manuell</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>Verbinden</translation>
    </message>
    <message>
        <source>IP address of your Hue bridge</source>
        <translation>IP-Adresse der Hue Bridge</translation>
    </message>
    <message>
        <source>Detecting…</source>
        <translation>Suche läuft …</translation>
    </message>
    <message>
        <source>Connecting…</source>
        <translation>Verbindung wird hergestellt …</translation>
    </message>
    <message>
        <source>No bridge found yet.</source>
        <translation>Noch keine Bridge gefunden.</translation>
    </message>
    <message>
        <source>Bridge at %1</source>
        <translation>Bridge unter %1</translation>
    </message>
    <message numerus="yes">
        <source>%n bridges found.</source>
        <translation>
            <numerusform>%n Bridge gefunden.</numerusform>
            <numerusform>%n Bridges gefunden.</numerusform>
        </translation>
    </message>
    <message>
        <source>Detect and pair</source>
        <translation>Suchen und koppeln</translation>
    </message>
    <message>
        <source>Finds the bridge on your network and asks it to pair at once: press its link button first.</source>
        <translation>Sucht die Bridge im Netzwerk und bittet sie sofort um die Kopplung: vorher ihre Link-Taste drücken.</translation>
    </message>
</context>
<context>
    <name>ConnectionBanner</name>
    <message>
        <source>Bridge not reachable — retrying</source>
        <translation>Bridge nicht erreichbar — neuer Versuch läuft</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Settings could not be saved: %1</source>
        <translation>Die Einstellungen konnten nicht gespeichert werden: %1</translation>
    </message>
</context>
<context>
    <name>ConnectionPane</name>
    <message>
        <source>Remove the bridge %1? Glowdeck forgets its key and stops showing its lights; to use it again, pair it again with its link button.</source>
        <translation>Die Bridge %1 entfernen? Glowdeck vergisst ihren Schlüssel und zeigt ihre Lampen nicht mehr an; um sie wieder zu verwenden, muss sie erneut über ihre Link-Taste gekoppelt werden.</translation>
    </message>
    <message>
        <source>Remove bridge</source>
        <translation>Bridge entfernen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
</context>
<context>
    <name>ConnectionView</name>
    <message>
        <source>Several bridges answered. Pick yours:</source>
        <translation>Mehrere Bridges haben geantwortet. Bitte die eigene auswählen:</translation>
    </message>
    <message>
        <source>Use this bridge</source>
        <translation>Diese Bridge verwenden</translation>
    </message>
    <message>
        <source>Bridges found</source>
        <translation>Gefundene Bridges</translation>
    </message>
    <message>
        <source>Connect to a Hue bridge</source>
        <translation>Mit einer Hue Bridge verbinden</translation>
    </message>
    <message>
        <source>Connection status</source>
        <translation>Verbindungsstatus</translation>
    </message>
    <message>
        <source>It moved from %1 to %2 and was found there by itself.</source>
        <translation>Sie ist von %1 nach %2 umgezogen und wurde dort selbstständig gefunden.</translation>
    </message>
    <message>
        <source>Click Glowdeck&apos;s lamp icon (or open its window) and you should see your lights now. If not, you can try to re-connect.</source>
        <translation>Ein Klick auf das Lampensymbol von Glowdeck (oder das Öffnen seines Fensters) sollte jetzt die Lampen zeigen. Falls nicht, kann die Verbindung erneut hergestellt werden.</translation>
    </message>
    <message>
        <source>The bridge at %1 does not answer. Glowdeck keeps its key and keeps trying, and looks for the bridge on your network in case it moved. Check that the bridge has power and is connected to your router.</source>
        <translation>Die Bridge unter %1 antwortet nicht. Glowdeck behält ihren Schlüssel, versucht es weiter und sucht die Bridge im Netzwerk, falls sie umgezogen ist. Bitte prüfen, ob die Bridge Strom hat und mit dem Router verbunden ist.</translation>
    </message>
    <message>
        <source>Glowdeck sent nothing to %1, not even its key. Pairing again is not the fix: it would trust whatever answers there. Detect finds your bridge if it moved; pair again only with a bridge you reset or replaced yourself.</source>
        <translation>Glowdeck hat nichts an %1 gesendet, auch nicht den Schlüssel. Erneutes Koppeln ist keine Lösung: Es würde allem vertrauen, was dort antwortet. „Suchen und koppeln“ findet die Bridge, falls sie umgezogen ist; erneut koppeln nur mit einer Bridge, die selbst zurückgesetzt oder ersetzt wurde.</translation>
    </message>
    <message>
        <source>Connection trouble? Click to send debug data!</source>
        <translation>Verbindungsprobleme? Hier klicken, um Fehlerdaten zu senden!</translation>
    </message>
    <message>
        <source>Every bridge found is paired already.</source>
        <translation>Jede gefundene Bridge ist bereits gekoppelt.</translation>
    </message>
    <message>
        <source>CONNECTED</source>
        <translation>VERBUNDEN</translation>
    </message>
    <message>
        <source>NOT ANSWERING</source>
        <translation>ANTWORTET NICHT</translation>
    </message>
    <message>
        <source>NOT TRUSTED</source>
        <translation>NICHT VERTRAUENSWÜRDIG</translation>
    </message>
    <message>
        <source>DISCONNECTED</source>
        <translation>GETRENNT</translation>
    </message>
    <message>
        <source>Bridge %1, over %2</source>
        <translation>Bridge %1, über %2</translation>
    </message>
    <message>
        <source>Over %1</source>
        <translation>Über %1</translation>
    </message>
    <message>
        <source>Live updates: the bridge tells of every change</source>
        <translation>Live-Aktualisierung: Die Bridge meldet jede Änderung</translation>
    </message>
    <message>
        <source>Reading every 3.5 s</source>
        <translation>Abfrage alle 3,5 s</translation>
    </message>
    <message>
        <source>Disconnect</source>
        <translation>Trennen</translation>
    </message>
    <message>
        <source>Connecting…</source>
        <translation>Verbindung wird hergestellt …</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>Verbinden</translation>
    </message>
    <message>
        <source>Hue bridge</source>
        <translation>Hue Bridge</translation>
    </message>
    <message>
        <source>%1 at %2 (%3)</source>
        <translation>%1 unter %2 (%3)</translation>
    </message>
    <message>
        <source>Thank you!</source>
        <translation>Vielen Dank!</translation>
    </message>
    <message>
        <source>Glowdeck is not paired with a Hue bridge yet. Press the round link button on the bridge, then click &quot;Detect and pair&quot; below: it finds the bridge and asks it to pair at once. Or choose Manual, type the bridge&apos;s address and click Connect.</source>
        <translation>Glowdeck ist noch mit keiner Hue Bridge gekoppelt. Die runde Link-Taste an der Bridge drücken, dann unten auf „Suchen und koppeln“ klicken: Die Bridge wird gesucht und sofort um die Kopplung gebeten. Oder „Manuell“ wählen, die Adresse der Bridge eingeben und auf „Verbinden“ klicken.</translation>
    </message>
    <message>
        <source>You need to press the link button on your bridge before clicking &quot;Detect and pair&quot; or Connect.</source>
        <translation>Vor dem Klick auf „Suchen und koppeln“ oder „Verbinden“ muss die Link-Taste der Bridge gedrückt werden.</translation>
    </message>
</context>
<context>
    <name>ControlRow</name>
    <message>
        <source>%1 brightness</source>
        <translation>%1 Helligkeit</translation>
    </message>
    <message>
        <source>%1 colour</source>
        <translation>%1 Farbe</translation>
    </message>
    <message>
        <source>%1 white tone</source>
        <translation>%1 Weißton</translation>
    </message>
</context>
<context>
    <name>DebugView</name>
    <message>
        <source>Send debug data</source>
        <translation>Fehlerdaten senden</translation>
    </message>
    <message>
        <source>Show report</source>
        <translation>Bericht anzeigen</translation>
    </message>
    <message>
        <source>Debug information</source>
        <translation>Fehlerinformationen</translation>
    </message>
    <message>
        <source>When Glowdeck cannot find or reach your bridge, a debug report helps to find out why. It holds the versions of Glowdeck, Qt and your system, your settings and the last messages of the program (the bridge&apos;s key left out), and whether the bridge answers. It is saved on this computer, where you can read it, and sent to the developers unless error reports are switched off.</source>
        <translation>Wenn Glowdeck die Bridge nicht findet oder nicht erreicht, hilft ein Fehlerbericht, den Grund zu finden. Er enthält die Versionen von Glowdeck, Qt und dem System, die Einstellungen und die letzten Meldungen des Programms (ohne den Schlüssel der Bridge) sowie, ob die Bridge antwortet. Er wird auf diesem Rechner gespeichert, wo er gelesen werden kann, und an die Entwickler gesendet, sofern Fehlerberichte nicht ausgeschaltet sind.</translation>
    </message>
    <message>
        <source>Close the window</source>
        <translation>Fenster schließen</translation>
    </message>
    <message>
        <source>Collecting…</source>
        <translation>Wird gesammelt …</translation>
    </message>
    <message>
        <source>Thank you!</source>
        <translation>Vielen Dank!</translation>
    </message>
    <message>
        <source>No report could be made; the reason is in the program&apos;s messages.</source>
        <translation>Es konnte kein Bericht erstellt werden; der Grund steht in den Meldungen des Programms.</translation>
    </message>
</context>
<context>
    <name>DesktopNotifications</name>
    <message>
        <source>Lights off at %1</source>
        <translation>Licht aus um %1</translation>
    </message>
    <message numerus="yes">
        <source>All lights switch off in %n minute(s).</source>
        <translation>
            <numerusform>Alle Lampen gehen in %n Minute aus.</numerusform>
            <numerusform>Alle Lampen gehen in %n Minuten aus.</numerusform>
        </translation>
    </message>
    <message>
        <source>Lights off</source>
        <translation>Licht aus</translation>
    </message>
    <message>
        <source>The switch-off timer went off.</source>
        <translation>Der Ausschalt-Timer ist abgelaufen.</translation>
    </message>
    <message>
        <source>It answered with an error (HTTP %1).</source>
        <translation>Sie hat mit einem Fehler geantwortet (HTTP %1).</translation>
    </message>
    <message>
        <source>Its answer could not be read.</source>
        <translation>Ihre Antwort konnte nicht gelesen werden.</translation>
    </message>
    <message>
        <source>The bridge refused a change</source>
        <translation>Die Bridge hat eine Änderung abgelehnt</translation>
    </message>
    <message>
        <source>Found the bridge %1 again</source>
        <translation>Bridge %1 wieder gefunden</translation>
    </message>
    <message>
        <source>It answers, and Glowdeck shows its lights as they are now.</source>
        <translation>Sie antwortet, und Glowdeck zeigt ihre Lampen so, wie sie jetzt sind.</translation>
    </message>
    <message>
        <source>Lost the bridge %1</source>
        <translation>Bridge %1 verloren</translation>
    </message>
    <message>
        <source>It does not answer. Glowdeck keeps trying, and looks for it on your network in case it moved.</source>
        <translation>Sie antwortet nicht. Glowdeck versucht es weiter und sucht sie im Netzwerk, falls sie umgezogen ist.</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>GroupActionPicker</name>
    <message>
        <source>%1 (room not found)</source>
        <translation>%1 (Raum nicht gefunden)</translation>
    </message>
</context>
<context>
    <name>HeightGrip</name>
    <message>
        <source>Resize</source>
        <translation>Größe ändern</translation>
    </message>
    <message>
        <source>Drag to change the height, or at the corner the size</source>
        <translation>Ziehen ändert die Höhe, an der Ecke die Größe</translation>
    </message>
</context>
<context>
    <name>HotkeyActions</name>
    <message>
        <source>On</source>
        <translation>Ein</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
    <message>
        <source>Brighter</source>
        <translation>Heller</translation>
    </message>
    <message>
        <source>Darker</source>
        <translation>Dunkler</translation>
    </message>
    <message>
        <source>(No action)</source>
        <translation>(Keine Aktion)</translation>
    </message>
    <message>
        <source>%1 (zone)</source>
        <translation>%1 (Zone)</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
</context>
<context>
    <name>HotkeyNames</name>
    <message>
        <source>Switch every room on</source>
        <translation>Alle Räume einschalten</translation>
    </message>
    <message>
        <source>Switch every room off</source>
        <translation>Alle Räume ausschalten</translation>
    </message>
    <message>
        <source>Make every room brighter</source>
        <translation>Alle Räume heller</translation>
    </message>
    <message>
        <source>Make every room darker</source>
        <translation>Alle Räume dunkler</translation>
    </message>
    <message>
        <source>Turn every room red</source>
        <translation>Alle Räume rot</translation>
    </message>
    <message>
        <source>Turn every room blue</source>
        <translation>Alle Räume blau</translation>
    </message>
    <message>
        <source>Turn every room white</source>
        <translation>Alle Räume weiß</translation>
    </message>
    <message>
        <source>Room action 1</source>
        <translation>Raumaktion 1</translation>
    </message>
    <message>
        <source>Room action 2</source>
        <translation>Raumaktion 2</translation>
    </message>
    <message>
        <source>Room action 3</source>
        <translation>Raumaktion 3</translation>
    </message>
    <message>
        <source>Room action 4</source>
        <translation>Raumaktion 4</translation>
    </message>
    <message>
        <source>Room action 5</source>
        <translation>Raumaktion 5</translation>
    </message>
    <message>
        <source>Open Glowdeck</source>
        <translation>Glowdeck öffnen</translation>
    </message>
</context>
<context>
    <name>HotkeyView</name>
    <message>
        <source>Everything</source>
        <translation>Alles</translation>
    </message>
    <message>
        <source>Individual groups</source>
        <translation>Einzelne Gruppen</translation>
    </message>
    <message>
        <source>Small</source>
        <translation>Klein</translation>
    </message>
    <message>
        <source>Medium</source>
        <translation>Mittel</translation>
    </message>
    <message>
        <source>Large</source>
        <translation>Groß</translation>
    </message>
    <message>
        <source>Shortcuts</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>Step size</source>
        <translation>Schrittweite</translation>
    </message>
    <message>
        <source>Hotkey settings</source>
        <translation>Einstellungen der Tastenkürzel</translation>
    </message>
    <message>
        <source>&lt;p&gt;&lt;b&gt;Global shortcuts are not available on this desktop.&lt;/b&gt;&lt;/p&gt;&lt;p&gt;Glowdeck registers them with X11 or, on Wayland, through the desktop portal&apos;s global shortcuts service, and found neither here. Your desktop&apos;s own keyboard settings can run &lt;tt&gt;glowdeckctl&lt;/tt&gt; commands instead, such as &lt;tt&gt;glowdeckctl all-off&lt;/tt&gt;.&lt;/p&gt;</source>
        <translation>&lt;p&gt;&lt;b&gt;Globale Tastenkürzel sind in dieser Arbeitsumgebung nicht verfügbar.&lt;/b&gt;&lt;/p&gt;&lt;p&gt;Glowdeck meldet sie bei X11 oder unter Wayland über den Dienst für globale Tastenkürzel des Desktop-Portals an und hat hier keines von beiden gefunden. Die Tastatureinstellungen der Arbeitsumgebung können stattdessen Befehle von &lt;tt&gt;glowdeckctl&lt;/tt&gt; ausführen, etwa &lt;tt&gt;glowdeckctl all-off&lt;/tt&gt;.&lt;/p&gt;</translation>
    </message>
    <message>
        <source>Details: %1</source>
        <translation>Details: %1</translation>
    </message>
</context>
<context>
    <name>HotkeysEverythingView</name>
    <message>
        <source>All on</source>
        <translation>Alle Lampen an</translation>
    </message>
    <message>
        <source>All off</source>
        <translation>Alle Lampen aus</translation>
    </message>
    <message>
        <source>Brighter</source>
        <translation>Heller</translation>
    </message>
    <message>
        <source>Darker</source>
        <translation>Dunkler</translation>
    </message>
    <message>
        <source>Red</source>
        <translation>Rot</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>Blau</translation>
    </message>
    <message>
        <source>White</source>
        <translation>Weiß</translation>
    </message>
    <message>
        <source>Open Glowdeck</source>
        <translation>Glowdeck öffnen</translation>
    </message>
    <message>
        <source>These act on every room at once, from any application. The last opens or closes Glowdeck&apos;s window.</source>
        <translation>Diese wirken auf alle Räume zugleich, aus jeder Anwendung heraus. Das letzte öffnet oder schließt das Fenster von Glowdeck.</translation>
    </message>
</context>
<context>
    <name>HotkeysIndividualView</name>
    <message>
        <source>Shortcut</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>Room action</source>
        <translation>Raumaktion</translation>
    </message>
    <message>
        <source>Shortcut %1</source>
        <translation>Tastenkürzel %1</translation>
    </message>
    <message>
        <source>Room action %1</source>
        <translation>Raumaktion %1</translation>
    </message>
    <message>
        <source>Each of these does one thing to one room. The rooms come from your bridges.</source>
        <translation>Jedes davon bewirkt eine Sache in einem Raum. Die Räume stammen von den Bridges.</translation>
    </message>
</context>
<context>
    <name>ImagePlayer</name>
    <message>
        <source>A finger presses the round link button in the middle of the bridge</source>
        <translation>Ein Finger drückt die runde Link-Taste in der Mitte der Bridge</translation>
    </message>
</context>
<context>
    <name>InformationView</name>
    <message>
        <source>Want to help? A coffee is always appreciated.</source>
        <translation>Unterstützen? Über einen Kaffee freuen wir uns immer.</translation>
    </message>
</context>
<context>
    <name>JsonSettingsStore</name>
    <message>
        <source>The settings file %1 was left empty by another program; the settings were saved anew</source>
        <translation>Die Einstellungsdatei %1 wurde von einem anderen Programm geleert; die Einstellungen wurden neu gespeichert</translation>
    </message>
    <message>
        <source>The settings file %1 was changed into something that is not valid JSON; it was kept as %2, and the settings were saved anew</source>
        <translation>Die Einstellungsdatei %1 enthält kein gültiges JSON mehr; sie wurde als %2 aufbewahrt und die Einstellungen wurden neu gespeichert</translation>
    </message>
    <message>
        <source>The settings file %1 grew larger than 1 MiB; it was kept as %2, and the settings were saved anew</source>
        <translation>Die Einstellungsdatei %1 ist größer als 1 MiB geworden; sie wurde als %2 aufbewahrt und die Einstellungen wurden neu gespeichert</translation>
    </message>
</context>
<context>
    <name>LampSelectorView</name>
    <message>
        <source>Move up</source>
        <translation>Nach oben</translation>
    </message>
    <message>
        <source>Move down</source>
        <translation>Nach unten</translation>
    </message>
    <message>
        <source>No lights yet. Connect to your Hue bridge, and its lights are listed here.</source>
        <translation>Noch keine Lampen. Nach der Verbindung mit der Hue Bridge stehen ihre Lampen hier.</translation>
    </message>
    <message>
        <source>Open the connection settings</source>
        <translation>Verbindungseinstellungen öffnen</translation>
    </message>
    <message>
        <source>Lights</source>
        <translation>Lampen</translation>
    </message>
    <message>
        <source>Drag a light to change the order.</source>
        <translation>Eine Lampe ziehen, um die Reihenfolge zu ändern.</translation>
    </message>
    <message>
        <source>Which lights do you want to control?</source>
        <translation>Welche Lampen sollen gesteuert werden?</translation>
    </message>
</context>
<context>
    <name>Launcher</name>
    <message>
        <source>Glowdeck %1: Philips Hue lights from the system tray.</source>
        <translation>Glowdeck %1: Philips-Hue-Lampen aus der Systemleiste.</translation>
    </message>
    <message>
        <source>Read and write the settings in &lt;file&gt;.</source>
        <translation>Die Einstellungen in &lt;Datei&gt; lesen und schreiben.</translation>
    </message>
    <message>
        <source>file</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Run against a simulated bridge, with settings of its own.</source>
        <translation>Mit einer simulierten Bridge und eigenen Einstellungen laufen.</translation>
    </message>
    <message>
        <source>Also trust the authority in &lt;file&gt; (PEM) for the bridge&apos;s certificate, beside the bridge maker&apos;s own (for a test bridge).</source>
        <translation>Für das Zertifikat der Bridge außer der Zertifizierungsstelle des Herstellers auch der in &lt;Datei&gt; (PEM) vertrauen (für eine Test-Bridge).</translation>
    </message>
    <message>
        <source>Show Glowdeck in a window of its own rather than behind a tray icon (as on a desktop without a system tray).</source>
        <translation>Glowdeck in einem eigenen Fenster statt hinter einem Symbol in der Systemleiste zeigen (wie in einer Arbeitsumgebung ohne Systemleiste).</translation>
    </message>
    <message>
        <source>Try glowdeck --help.</source>
        <translation>Siehe glowdeck --help.</translation>
    </message>
    <message>
        <source>Glowdeck needs a graphical desktop session. Without one, use glowdeckctl (see README.md).</source>
        <translation>Glowdeck braucht eine grafische Sitzung. Ohne eine solche bitte glowdeckctl verwenden (siehe README.md).</translation>
    </message>
    <message>
        <source>glowdeck: also trusting %1 (%2) for the bridge&apos;s certificate</source>
        <translation>glowdeck: vertraut für das Zertifikat der Bridge auch %1 (%2)</translation>
    </message>
    <message>
        <source>glowdeck: already running with %1; its window was opened.</source>
        <translation>glowdeck: läuft bereits mit %1; sein Fenster wurde geöffnet.</translation>
    </message>
    <message>
        <source>glowdeck: another Glowdeck holds %1 but does not answer; end it first (or use --settings FILE).</source>
        <translation>glowdeck: ein anderes Glowdeck verwendet %1, antwortet aber nicht; bitte zuerst beenden (oder --settings DATEI angeben).</translation>
    </message>
</context>
<context>
    <name>LightsPane</name>
    <message>
        <source>Bridge:</source>
        <translation>Bridge:</translation>
    </message>
    <message>
        <source>Bridge</source>
        <translation>Bridge</translation>
    </message>
</context>
<context>
    <name>ListGroups</name>
    <message>
        <source>Zones</source>
        <translation>Zonen</translation>
    </message>
</context>
<context>
    <name>ListScenes</name>
    <message>
        <source>Filter scenes</source>
        <translation>Szenen filtern</translation>
    </message>
    <message>
        <source>Type part of a scene&apos;s or a room&apos;s name. Escape clears it.</source>
        <translation>Einen Teil des Namens einer Szene oder eines Raums eingeben. Escape leert das Feld.</translation>
    </message>
    <message>
        <source>No scene matches “%1”.</source>
        <translation>Keine Szene passt zu „%1“.</translation>
    </message>
</context>
<context>
    <name>PairedBridgeList</name>
    <message>
        <source>Add a bridge…</source>
        <translation>Bridge hinzufügen …</translation>
    </message>
    <message>
        <source>Pair again</source>
        <translation>Erneut koppeln</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Paired bridges</source>
        <translation>Gekoppelte Bridges</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>ID</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Adresse</translation>
    </message>
    <message>
        <source>Transport</source>
        <translation>Übertragung</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>not paired</source>
        <translation>nicht gekoppelt</translation>
    </message>
    <message>
        <source>live</source>
        <translation>live</translation>
    </message>
    <message>
        <source>reading</source>
        <translation>fragt ab</translation>
    </message>
    <message>
        <source>not answering</source>
        <translation>antwortet nicht</translation>
    </message>
    <message>
        <source>not trusted</source>
        <translation>nicht vertrauenswürdig</translation>
    </message>
    <message>
        <source>connecting</source>
        <translation>verbindet</translation>
    </message>
    <message>
        <source>New bridge</source>
        <translation>Neue Bridge</translation>
    </message>
</context>
<context>
    <name>PaneTabController</name>
    <message>
        <source>Preference panes</source>
        <translation>Einstellungsseiten</translation>
    </message>
    <message>
        <source>Next pane</source>
        <translation>Nächste Seite</translation>
    </message>
    <message>
        <source>Previous pane</source>
        <translation>Vorherige Seite</translation>
    </message>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
</context>
<context>
    <name>PanelTabs</name>
    <message>
        <source>Lights</source>
        <translation>Lampen</translation>
    </message>
    <message>
        <source>Rooms</source>
        <translation>Räume</translation>
    </message>
    <message>
        <source>Scenes</source>
        <translation>Szenen</translation>
    </message>
</context>
<context>
    <name>PreferencesGeneralView</name>
    <message>
        <source>Run at start</source>
        <translation>Bei der Anmeldung starten</translation>
    </message>
    <message>
        <source>Show color bars for rooms</source>
        <translation>Farbbalken für Räume anzeigen</translation>
    </message>
    <message>
        <source>Show zones</source>
        <translation>Zonen anzeigen</translation>
    </message>
    <message>
        <source>Show scene panel</source>
        <translation>Szenenbereich anzeigen</translation>
    </message>
    <message>
        <source>App icon</source>
        <translation>Programmsymbol</translation>
    </message>
    <message>
        <source>Start Glowdeck when you log in.</source>
        <translation>Glowdeck bei der Anmeldung starten.</translation>
    </message>
    <message>
        <source>Notifications</source>
        <translation>Benachrichtigungen</translation>
    </message>
    <message>
        <source>Tell the desktop when a timer went off, a bridge was lost or found again, or refused a change while the window was closed.</source>
        <translation>Die Arbeitsumgebung benachrichtigen, wenn ein Timer abgelaufen ist, eine Bridge verloren oder wieder gefunden wurde oder bei geschlossenem Fenster eine Änderung abgelehnt hat.</translation>
    </message>
</context>
<context>
    <name>PreferencesInformationView</name>
    <message>
        <source>Frequently asked questions</source>
        <translation>Häufig gestellte Fragen</translation>
    </message>
    <message>
        <source>Provide feedback</source>
        <translation>Rückmeldung geben</translation>
    </message>
    <message>
        <source>Debug information…</source>
        <translation>Fehlerinformationen …</translation>
    </message>
    <message>
        <source>Get support</source>
        <translation>Hilfe erhalten</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
</context>
<context>
    <name>PreferencesWindowController</name>
    <message>
        <source>Close the window</source>
        <translation>Fenster schließen</translation>
    </message>
</context>
<context>
    <name>QShortcut</name>
    <message>
        <source>Return</source>
        <translation>Eingabe</translation>
    </message>
    <message>
        <source>Enter</source>
        <translation>Enter</translation>
    </message>
    <message>
        <source>Tab</source>
        <translation>Tab</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Leertaste</translation>
    </message>
    <message>
        <source>Backspace</source>
        <translation>Rücktaste</translation>
    </message>
    <message>
        <source>Esc</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>Ins</source>
        <translation>Einfg</translation>
    </message>
    <message>
        <source>Del</source>
        <translation>Entf</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Pos1</translation>
    </message>
    <message>
        <source>End</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>PgUp</source>
        <translation>Bild aufwärts</translation>
    </message>
    <message>
        <source>PgDown</source>
        <translation>Bild abwärts</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Links</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Rechts</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Hoch</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>Runter</translation>
    </message>
    <message>
        <source>Meta</source>
        <translation>Meta</translation>
    </message>
    <message>
        <source>Ctrl</source>
        <translation>Strg</translation>
    </message>
    <message>
        <source>Alt</source>
        <translation>Alt</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Umschalt</translation>
    </message>
    <message>
        <source>F%1</source>
        <translation>F%1</translation>
    </message>
    <message>
        <source>Num</source>
        <translation>Num</translation>
    </message>
</context>
<context>
    <name>RecorderField</name>
    <message>
        <source>Clear shortcut</source>
        <translation>Tastenkürzel löschen</translation>
    </message>
    <message>
        <source>Record shortcut</source>
        <translation>Tastenkürzel aufnehmen</translation>
    </message>
    <message>
        <source>Press shortcut</source>
        <translation>Tastenkürzel drücken</translation>
    </message>
    <message>
        <source>This shortcut cannot be used because Glowdeck already uses it for “%1”.</source>
        <translation>Dieses Tastenkürzel kann nicht verwendet werden, weil Glowdeck es bereits für „%1“ verwendet.</translation>
    </message>
    <message>
        <source>This shortcut cannot be used because it is already used by the system.</source>
        <translation>Dieses Tastenkürzel kann nicht verwendet werden, weil das System es bereits verwendet.</translation>
    </message>
    <message>
        <source>Your desktop or another running program has taken it. Most desktops let you change their own shortcuts in their keyboard settings.</source>
        <translation>Die Arbeitsumgebung oder ein anderes laufendes Programm hat es belegt. In den meisten Arbeitsumgebungen lassen sich deren eigene Tastenkürzel in den Tastatureinstellungen ändern.</translation>
    </message>
    <message>
        <source>No shortcut</source>
        <translation>Kein Tastenkürzel</translation>
    </message>
</context>
<context>
    <name>RegularTitlebarView</name>
    <message>
        <source>Got a second?</source>
        <translation>Kurz Zeit?</translation>
    </message>
    <message>
        <source>Write a review</source>
        <translation>Eine Bewertung schreiben</translation>
    </message>
</context>
<context>
    <name>SceneRooms</name>
    <message>
        <source>Other scenes</source>
        <translation>Weitere Szenen</translation>
    </message>
</context>
<context>
    <name>SwitchOffNotice</name>
    <message>
        <source>All lights switch off at %1.</source>
        <translation>Alle Lampen gehen um %1 aus.</translation>
    </message>
</context>
<context>
    <name>TitleBars</name>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Menu (Shift+F10)</source>
        <translation>Menü (Umschalt+F10)</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
</context>
<context>
    <name>WelcomeView</name>
    <message>
        <source>Let&apos;s go!</source>
        <translation>Los geht’s!</translation>
    </message>
    <message>
        <source>This app is very minimal. It lives in the panel: click its lamp icon to start.</source>
        <translation>Dieses Programm ist sehr schlicht. Es wohnt in der Systemleiste: Zum Start auf sein Lampensymbol klicken.</translation>
    </message>
    <message>
        <source>This app is very minimal. This desktop has no tray for its icon, so it opens in a small window of its own.</source>
        <translation>Dieses Programm ist sehr schlicht. Diese Arbeitsumgebung hat keine Systemleiste für sein Symbol, daher öffnet es sich in einem kleinen eigenen Fenster.</translation>
    </message>
</context>
</TS>
