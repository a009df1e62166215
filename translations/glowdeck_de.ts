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
    <message>
        <source>The bridge took only part of the change: %1</source>
        <translation>Die Bridge hat die Änderung nur teilweise übernommen: %1</translation>
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
    <message>
        <source>interface v2</source>
        <translation>Schnittstelle v2</translation>
    </message>
    <message>
        <source>interface v1 (older bridge)</source>
        <translation>Schnittstelle v1 (ältere Bridge)</translation>
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
    <message>
        <source>%1 colour and white tone</source>
        <translation>%1 Farbe und Weißton</translation>
    </message>
    <message>
        <source>Show or hide the colour and white tone of %1</source>
        <translation>Farbe und Weißton von %1 zeigen oder ausblenden</translation>
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
    <name>DesktopBusService</name>
    <message>
        <source>Another program holds the name %1 on the session bus.</source>
        <translation>Ein anderes Programm belegt den Namen %1 auf dem Sitzungsbus.</translation>
    </message>
    <message>
        <source>bridge_id takes a string.</source>
        <translation>bridge_id erwartet eine Zeichenkette.</translation>
    </message>
    <message>
        <source>No bridge %1 is served.</source>
        <translation>Keine Bridge %1 wird bedient.</translation>
    </message>
    <message>
        <source>%1 takes a number from %2 to %3.</source>
        <translation>%1 erwartet eine Zahl von %2 bis %3.</translation>
    </message>
    <message>
        <source>on takes a boolean.</source>
        <translation>on erwartet einen Wahrheitswert.</translation>
    </message>
    <message>
        <source>xy takes two numbers from 0 to 1.</source>
        <translation>xy erwartet zwei Zahlen von 0 bis 1.</translation>
    </message>
    <message>
        <source>Unknown field %1; a change takes on, brightness, brightness_step, xy, mirek, hue and bridge_id.</source>
        <translation>Unbekanntes Feld %1; eine Änderung kennt on, brightness, brightness_step, xy, mirek, hue und bridge_id.</translation>
    </message>
    <message>
        <source>The change of the room changes nothing.</source>
        <translation>Die Änderung des Raums ändert nichts.</translation>
    </message>
    <message>
        <source>The change of the lamp changes nothing.</source>
        <translation>Die Änderung der Lampe ändert nichts.</translation>
    </message>
    <message>
        <source>No %1 has the id or name %2.</source>
        <translation>%1 mit der ID oder dem Namen %2 gibt es nicht.</translation>
    </message>
    <message>
        <source>%1 names several: %2.</source>
        <translation>%1 passt auf mehrere: %2.</translation>
    </message>
    <message>
        <source>Give the id, and bridge_id.</source>
        <translation>Bitte die ID und bridge_id angeben.</translation>
    </message>
    <message>
        <source>lamp</source>
        <translation>Lampe</translation>
    </message>
    <message>
        <source>The lamp %1 cannot be dimmed.</source>
        <translation>Die Lampe %1 lässt sich nicht dimmen.</translation>
    </message>
    <message>
        <source>room</source>
        <translation>Raum</translation>
    </message>
    <message>
        <source>Unknown option %1; a scene takes bridge_id.</source>
        <translation>Unbekannte Option %1; eine Szene kennt bridge_id.</translation>
    </message>
    <message>
        <source>scene</source>
        <translation>Szene</translation>
    </message>
    <message>
        <source>SwitchOffIn takes a number of minutes from 1 to 1440.</source>
        <translation>SwitchOffIn erwartet eine Anzahl Minuten von 1 bis 1440.</translation>
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
    <message>
        <source>The bridge took only part of a change</source>
        <translation>Die Bridge hat eine Änderung nur zum Teil übernommen</translation>
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
    <message>
        <source>zone</source>
        <translation>Zone</translation>
    </message>
    <message>
        <source>room</source>
        <translation>Raum</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message numerus="yes">
        <source>%1, %n lamps</source>
        <translation>
            <numerusform>%1, %n Lampe</numerusform>
            <numerusform>%1, %n Lampen</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 — %2</source>
        <translation>%1 — %2</translation>
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
    <message>
        <source>Filter rooms</source>
        <translation>Räume filtern</translation>
    </message>
    <message>
        <source>Type part of a room&apos;s name to shorten the lists of room actions.</source>
        <translation>Einen Teil eines Raumnamens eingeben, um die Listen der Raumaktionen zu kürzen.</translation>
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
    <message>
        <source>Filter rooms</source>
        <translation>Räume filtern</translation>
    </message>
    <message>
        <source>Type part of a room&apos;s or a zone&apos;s name. Escape clears it.</source>
        <translation>Einen Teil des Namens eines Raums oder einer Zone eingeben. Escape leert das Feld.</translation>
    </message>
</context>
<context>
    <name>ListLights</name>
    <message>
        <source>Filter lamps</source>
        <translation>Lampen filtern</translation>
    </message>
    <message>
        <source>Type part of a lamp&apos;s name. Escape clears it.</source>
        <translation>Einen Teil eines Lampennamens eingeben. Escape leert das Feld.</translation>
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
        <source>This desktop shows no system tray, so Glowdeck opens in a window of its own. For a lamp icon in the panel, the desktop needs a tray (on GNOME, the AppIndicator extension). Closing the window keeps Glowdeck running for its shortcuts; starting Glowdeck again brings it back.</source>
        <translation>Diese Arbeitsumgebung zeigt keine Systemleiste, daher öffnet sich Glowdeck in einem eigenen Fenster. Für ein Lampensymbol in der Leiste braucht die Arbeitsumgebung eine Systemleiste (unter GNOME die Erweiterung AppIndicator). Wird das Fenster geschlossen, läuft Glowdeck für seine Tastenkürzel weiter; ein erneuter Start von Glowdeck holt es zurück.</translation>
    </message>
</context>
<context>
    <name>glowdeck-simulator</name>
    <message numerus="yes">
        <source>--%1 takes one value for every bridge, or one for each: %2 given for %n bridges</source>
        <translation>
            <numerusform>--%1 erwartet einen Wert für alle Bridges oder einen für jede: %2 angegeben für %n Bridge</numerusform>
            <numerusform>--%1 erwartet einen Wert für alle Bridges oder einen für jede: %2 angegeben für %n Bridges</numerusform>
        </translation>
    </message>
    <message>
        <source>--%1 needs a number from 0 to 65535, not &quot;%2&quot;</source>
        <translation>--%1 braucht eine Zahl von 0 bis 65535, nicht „%2“</translation>
    </message>
    <message>
        <source>Simulates Philips Hue bridges (version-1 REST interface; version-2 interface and event stream over HTTPS) on local ports. The options marked [each] apply to every bridge when given once, or to each bridge in turn when given once per bridge.</source>
        <translation>Simuliert Philips Hue Bridges (REST-Schnittstelle Version 1; Schnittstelle Version 2 und Ereignisstrom über HTTPS) auf lokalen Ports. Die mit [jeweils] markierten Optionen gelten einmal angegeben für jede Bridge, einmal je Bridge angegeben für jede Bridge der Reihe nach.</translation>
    </message>
    <message>
        <source>Run N bridges (1 to %1; default: one per --bridge-id, else 1), each with its own id, ports, home, users and event stream: the first on the ground floor&apos;s default home, the second on the upper floor&apos;s.</source>
        <translation>N Bridges betreiben (1 bis %1; Vorgabe: eine je --bridge-id, sonst 1), jede mit eigener ID, eigenen Ports, eigenem Zuhause, eigenen Benutzern und eigenem Ereignisstrom: die erste mit dem vorgegebenen Zuhause des Erdgeschosses, die zweite mit dem des Obergeschosses.</translation>
    </message>
    <message>
        <source>[each] Port to listen on (default 0: any free port). Given once for several bridges, N, N+1, ...</source>
        <translation>[jeweils] Port, auf dem gelauscht wird (Vorgabe 0: ein beliebiger freier Port). Für mehrere Bridges einmal angegeben: N, N+1, ...</translation>
    </message>
    <message>
        <source>Address to listen on (default 127.0.0.1).</source>
        <translation>Adresse, auf der gelauscht wird (Vorgabe 127.0.0.1).</translation>
    </message>
    <message>
        <source>[each] Load the home from FILE.</source>
        <translation>[jeweils] Das Zuhause aus FILE laden.</translation>
    </message>
    <message>
        <source>Write the home (the default one, or the --home one) to FILE and exit; once per bridge.</source>
        <translation>Das Zuhause (das vorgegebene oder das von --home) in FILE schreiben und beenden; einmal je Bridge.</translation>
    </message>
    <message>
        <source>Register the user NAME on every bridge (may be repeated).</source>
        <translation>Den Benutzer NAME auf jeder Bridge registrieren (darf wiederholt werden).</translation>
    </message>
    <message>
        <source>Press the link buttons at start (pairing works for 30 s). Press them later with SIGUSR1, or one with a POST to its /__control/linkbutton from loopback.</source>
        <translation>Die Link-Tasten beim Start drücken (Kopplung 30 s lang möglich). Später mit SIGUSR1 drücken, oder eine einzelne mit einem POST an ihr /__control/linkbutton von Loopback aus.</translation>
    </message>
    <message>
        <source>Accept every pairing request without the link button.</source>
        <translation>Jede Kopplungsanfrage ohne Link-Taste annehmen.</translation>
    </message>
    <message>
        <source>[each] Delay every answer by MS milliseconds.</source>
        <translation>[jeweils] Jede Antwort um MS Millisekunden verzögern.</translation>
    </message>
    <message>
        <source>Print every request received.</source>
        <translation>Jede empfangene Anfrage ausgeben.</translation>
    </message>
    <message>
        <source>[each] Serve HTTPS on port N as well (0: any free port; given once for several bridges, N, N+1, ...).</source>
        <translation>[jeweils] Zusätzlich HTTPS auf Port N anbieten (0: ein beliebiger freier Port; für mehrere Bridges einmal angegeben: N, N+1, ...).</translation>
    </message>
    <message>
        <source>[each] The certificate HTTPS clients see: signed (default), self-signed, other-bridge, expired or unknown-authority.</source>
        <translation>[jeweils] Das Zertifikat, das HTTPS-Clients sehen: signed (Vorgabe), self-signed, other-bridge, expired oder unknown-authority.</translation>
    </message>
    <message>
        <source>The bridge id (16 hexadecimal digits); once per bridge, each its own.</source>
        <translation>Die ID der Bridge (16 Hexadezimalziffern); einmal je Bridge, jede ihre eigene.</translation>
    </message>
    <message>
        <source>Write the authority that signs the certificates (one for every bridge) to FILE (PEM), for a client to trust.</source>
        <translation>Die Zertifizierungsstelle, die die Zertifikate signiert (eine für alle Bridges), in FILE (PEM) schreiben, damit ein Client ihr vertrauen kann.</translation>
    </message>
    <message>
        <source>Answer plain HTTP with 301 to HTTPS, as the newest bridge does.</source>
        <translation>Einfaches HTTP mit 301 auf HTTPS beantworten, wie es die neueste Bridge tut.</translation>
    </message>
    <message>
        <source>Serve HTTPS only (with --tls-port).</source>
        <translation>Nur HTTPS anbieten (mit --tls-port).</translation>
    </message>
    <message>
        <source>[each] The event stream of HTTPS (GET /eventstream/clip/v2): normal (default: every change, also those sent with POST /__control/external/&lt;v1 path&gt; from loopback), silent (keep-alives only), off (404, as old firmware) or malformed (broken events).</source>
        <translation>[jeweils] Der Ereignisstrom über HTTPS (GET /eventstream/clip/v2): normal (Vorgabe: jede Änderung, auch die mit POST /__control/external/&lt;v1-Pfad&gt; von Loopback aus gesendeten), silent (nur Keep-alives), off (404, wie alte Firmware) oder malformed (fehlerhafte Ereignisse).</translation>
    </message>
    <message>
        <source>[each] End every event stream after N seconds, as busy bridges do (default 0: never).</source>
        <translation>[jeweils] Jeden Ereignisstrom nach N Sekunden beenden, wie es ausgelastete Bridges tun (Vorgabe 0: nie).</translation>
    </message>
    <message>
        <source>[each] As a bridge kept busy by another app: from the first change (PUT, POST or DELETE) it takes, answer every further change with 429 Too Many Requests for N seconds, then take them again; reads are answered all along (default 0: never). --busy-for N --busy-for 0 makes the first of two bridges busy.</source>
        <translation>[jeweils] Wie eine von einer anderen App ausgelastete Bridge: ab der ersten angenommenen Änderung (PUT, POST oder DELETE) N Sekunden lang jede weitere Änderung mit 429 Too Many Requests beantworten, danach wieder annehmen; Lesezugriffe werden die ganze Zeit beantwortet (Vorgabe 0: nie). --busy-for N --busy-for 0 lastet die erste von zwei Bridges aus.</translation>
    </message>
    <message>
        <source>Serve no version-2 interface: every /clip/v2/ path answers 404, as on a bridge with old firmware. Without it HTTPS serves GET and PUT /clip/v2/resource/... with the header hue-application-key, from the same home as version 1.</source>
        <translation>Keine Schnittstelle Version 2 anbieten: jeder Pfad /clip/v2/ antwortet 404, wie auf einer Bridge mit alter Firmware. Ohne diese Option bedient HTTPS GET und PUT /clip/v2/resource/... mit dem Header hue-application-key, aus demselben Zuhause wie Version 1.</translation>
    </message>
    <message>
        <source>[each] From the first version-2 write it takes, answer every further one with --v2-busy-status for N seconds; reads are answered all along (default 0: never).</source>
        <translation>[jeweils] Ab dem ersten angenommenen Schreibzugriff über Version 2 N Sekunden lang jeden weiteren mit --v2-busy-status beantworten; Lesezugriffe werden die ganze Zeit beantwortet (Vorgabe 0: nie).</translation>
    </message>
    <message>
        <source>The status of --v2-busy-for: 429 (default, over the budget) or 503 (busy).</source>
        <translation>Der Status von --v2-busy-for: 429 (Vorgabe, Kontingent überschritten) oder 503 (ausgelastet).</translation>
    </message>
    <message>
        <source>Answer a version-2 write of a room, zone or the whole home 207 when some of its lamps cannot be reached: those stay as they are and are named in &quot;errors&quot;.</source>
        <translation>Einen Schreibzugriff über Version 2 auf einen Raum, eine Zone oder das ganze Zuhause mit 207 beantworten, wenn einige seiner Lampen nicht erreichbar sind: diese bleiben, wie sie sind, und werden in &quot;errors&quot; genannt.</translation>
    </message>
    <message>
        <source>Answer every version-2 write with 400 and the error TEXT, changing nothing.</source>
        <translation>Jeden Schreibzugriff über Version 2 mit 400 und dem Fehler TEXT beantworten, ohne etwas zu ändern.</translation>
    </message>
    <message>
        <source>Enforce the bridge&apos;s pace over version 2: a light takes a write every 100 ms, a grouped light one a second; sooner ones are answered 429.</source>
        <translation>Das Tempo der Bridge über Version 2 durchsetzen: eine Lampe nimmt alle 100 ms einen Schreibzugriff an, ein Grouped Light einen pro Sekunde; frühere werden mit 429 beantwortet.</translation>
    </message>
    <message>
        <source>unexpected argument %1</source>
        <translation>unerwartetes Argument %1</translation>
    </message>
    <message>
        <source>--bridges needs a number from 1 to %1, not &quot;%2&quot;</source>
        <translation>--bridges braucht eine Zahl von 1 bis %1, nicht „%2“</translation>
    </message>
    <message numerus="yes">
        <source>--%1 takes one value for each bridge: %2 given for %n bridges</source>
        <translation>
            <numerusform>--%1 erwartet einen Wert für jede Bridge: %2 angegeben für %n Bridge</numerusform>
            <numerusform>--%1 erwartet einen Wert für jede Bridge: %2 angegeben für %n Bridges</numerusform>
        </translation>
    </message>
    <message>
        <source>--bind needs an IP address, not &quot;%1&quot;</source>
        <translation>--bind braucht eine IP-Adresse, nicht „%1“</translation>
    </message>
    <message>
        <source>--no-http, --redirect-http, --write-authority, --event-stream and --event-stream-lifetime go with --tls-port</source>
        <translation>--no-http, --redirect-http, --write-authority, --event-stream und --event-stream-lifetime gehen nur mit --tls-port</translation>
    </message>
    <message>
        <source>--v2-busy-status is 429 or 503, not &quot;%1&quot;</source>
        <translation>--v2-busy-status ist 429 oder 503, nicht „%1“</translation>
    </message>
    <message>
        <source>--latency needs milliseconds from 0 to 600000, not &quot;%1&quot;</source>
        <translation>--latency braucht Millisekunden von 0 bis 600000, nicht „%1“</translation>
    </message>
    <message>
        <source>--event-stream is one of %1, not &quot;%2&quot;</source>
        <translation>--event-stream ist eines von %1, nicht „%2“</translation>
    </message>
    <message>
        <source>--event-stream-lifetime needs seconds from 0 to 86400, not &quot;%1&quot;</source>
        <translation>--event-stream-lifetime braucht Sekunden von 0 bis 86400, nicht „%1“</translation>
    </message>
    <message>
        <source>--busy-for needs seconds from 0 to 86400, not &quot;%1&quot;</source>
        <translation>--busy-for braucht Sekunden von 0 bis 86400, nicht „%1“</translation>
    </message>
    <message>
        <source>--v2-busy-for needs seconds from 0 to 86400, not &quot;%1&quot;</source>
        <translation>--v2-busy-for braucht Sekunden von 0 bis 86400, nicht „%1“</translation>
    </message>
    <message>
        <source>--certificate is one of %1, not &quot;%2&quot;</source>
        <translation>--certificate ist eines von %1, nicht „%2“</translation>
    </message>
    <message>
        <source>--bridge-id needs 16 hexadecimal digits, not &quot;%1&quot;</source>
        <translation>--bridge-id braucht 16 Hexadezimalziffern, nicht „%1“</translation>
    </message>
    <message>
        <source>two bridges would have the id %1: give each its own with --bridge-id</source>
        <translation>zwei Bridges hätten die ID %1: jeder mit --bridge-id eine eigene geben</translation>
    </message>
    <message>
        <source>--user &quot;%1&quot; is not a usable user name</source>
        <translation>--user „%1“ ist kein brauchbarer Benutzername</translation>
    </message>
    <message>
        <source> on bridge %1</source>
        <comment>Completes &quot;Link button pressed (%1)%2&quot;</comment>
        <translation> auf Bridge %1</translation>
    </message>
    <message>
        <source>Link button pressed (%1)%2: pairing works for the next 30 s</source>
        <comment>%1 is the signal or request that pressed it, %2 the bridge or nothing</comment>
        <translation>Link-Taste gedrückt (%1)%2: Kopplung ist die nächsten 30 s lang möglich</translation>
    </message>
    <message>
        <source> on every bridge</source>
        <comment>Completes &quot;Link button pressed (%1)%2&quot;</comment>
        <translation> auf jeder Bridge</translation>
    </message>
    <message>
        <source>Hue bridge simulator listening on %1</source>
        <translation>Hue-Bridge-Simulator lauscht auf %1</translation>
    </message>
    <message>
        <source>Hue bridge simulator listening for HTTPS on %1</source>
        <translation>Hue-Bridge-Simulator lauscht für HTTPS auf %1</translation>
    </message>
    <message numerus="yes">
        <source>--%1 %2 leaves no room for a row of %n ports</source>
        <translation>
            <numerusform>--%1 %2 lässt keinen Platz für eine Reihe von %n Port</numerusform>
            <numerusform>--%1 %2 lässt keinen Platz für eine Reihe von %n Ports</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>glowdeckctl</name>
    <message>
        <source>Glowdeck refused: %1</source>
        <translation>Glowdeck hat abgelehnt: %1</translation>
    </message>
    <message>
        <source>Glowdeck serves no bridge %1.</source>
        <translation>Glowdeck bedient keine Bridge %1.</translation>
    </message>
    <message>
        <source>The lights go off at %1.</source>
        <translation>Die Lampen gehen um %1 aus.</translation>
    </message>
    <message>
        <source>switch on</source>
        <translation>einschalten</translation>
    </message>
    <message>
        <source>switch off</source>
        <translation>ausschalten</translation>
    </message>
    <message>
        <source> or 0%-100% (4 or 1% or less switches off)</source>
        <translation> oder 0%-100% (4 bzw. 1% oder weniger schaltet aus)</translation>
    </message>
    <message>
        <source> (colour; the lamp keeps its saturation)</source>
        <translation> (Farbe; die Lampe behält ihre Sättigung)</translation>
    </message>
    <message>
        <source> mired (white tone; higher is warmer)</source>
        <translation> Mired (Weißton; höher ist wärmer)</translation>
    </message>
    <message>
        <source> or 1%-100% (rooms only: raise the brightness by N)</source>
        <translation> oder 1%-100% (nur Räume: Helligkeit um N erhöhen)</translation>
    </message>
    <message>
        <source> or 1%-100% (rooms only: lower the brightness by N)</source>
        <translation> oder 1%-100% (nur Räume: Helligkeit um N senken)</translation>
    </message>
    <message>
        <source>Unexpected argument %1.</source>
        <translation>Unerwartetes Argument %1.</translation>
    </message>
    <message>
        <source>%1 takes a whole number from %2 to %3</source>
        <translation>%1 erwartet eine ganze Zahl von %2 bis %3</translation>
    </message>
    <message>
        <source>%1, not %2.</source>
        <translation>%1, nicht %2.</translation>
    </message>
    <message>
        <source>%1; %2 is out of range.</source>
        <translation>%1; %2 liegt außerhalb des Bereichs.</translation>
    </message>
    <message>
        <source>&apos;light&apos; needs a lamp id.</source>
        <translation>„light“ braucht die ID einer Lampe.</translation>
    </message>
    <message>
        <source>The lamp id must not be empty.</source>
        <translation>Die ID der Lampe darf nicht leer sein.</translation>
    </message>
    <message>
        <source>Unknown change %1 for a lamp; use %2.</source>
        <translation>Unbekannte Änderung %1 für eine Lampe; möglich sind %2.</translation>
    </message>
    <message>
        <source>&apos;room&apos; needs a room id.</source>
        <translation>„room“ braucht die ID eines Raums.</translation>
    </message>
    <message>
        <source>The room id must not be empty.</source>
        <translation>Die ID des Raums darf nicht leer sein.</translation>
    </message>
    <message>
        <source>Unknown change %1 for a room; use %2.</source>
        <translation>Unbekannte Änderung %1 für einen Raum; möglich sind %2.</translation>
    </message>
    <message>
        <source>&apos;scene&apos; needs a scene id.</source>
        <translation>„scene“ braucht die ID einer Szene.</translation>
    </message>
    <message>
        <source>The scene id must not be empty.</source>
        <translation>Die ID der Szene darf nicht leer sein.</translation>
    </message>
    <message>
        <source>&apos;%1 %2&apos; needs a change: %3.</source>
        <translation>„%1 %2“ braucht eine Änderung: %3.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; needs a number from %2 to %3.</source>
        <translation>„%1“ braucht eine Zahl von %2 bis %3.</translation>
    </message>
    <message>
        <source> in per cent</source>
        <translation> in Prozent</translation>
    </message>
    <message>
        <source>List the lamps: id, name, on/off, brightness, kind, product</source>
        <translation>Die Lampen auflisten: ID, Name, an/aus, Helligkeit, Art, Produkt</translation>
    </message>
    <message>
        <source>List the rooms and zones: id, name, type, on/off, brightness, lamp ids</source>
        <translation>Die Räume und Zonen auflisten: ID, Name, Typ, an/aus, Helligkeit, Lampen-IDs</translation>
    </message>
    <message>
        <source>List the scenes: id, name, room, type, number of lamps</source>
        <translation>Die Szenen auflisten: ID, Name, Raum, Typ, Anzahl der Lampen</translation>
    </message>
    <message>
        <source>Change one lamp, named by its id or name (see CHANGE below)</source>
        <translation>Eine Lampe ändern, genannt per ID oder Name (siehe CHANGE unten)</translation>
    </message>
    <message>
        <source>Change one room or zone, by its id or name (see CHANGE below)</source>
        <translation>Einen Raum oder eine Zone ändern, per ID oder Name (siehe CHANGE unten)</translation>
    </message>
    <message>
        <source>Recall a scene, named by its id or name</source>
        <translation>Eine Szene abrufen, genannt per ID oder Name</translation>
    </message>
    <message>
        <source>Switch every lamp on, with one request per bridge</source>
        <translation>Alle Lampen einschalten, mit einer Anfrage je Bridge</translation>
    </message>
    <message>
        <source>Switch every lamp off, with one request per bridge; with --in, say when</source>
        <translation>Alle Lampen ausschalten, mit einer Anfrage je Bridge; mit --in zu einer Zeit</translation>
    </message>
    <message>
        <source>Find the bridges on this network and show them; --pick ID stores that one&apos;s address</source>
        <translation>Die Bridges in diesem Netzwerk suchen und zeigen; --pick ID speichert die Adresse dieser einen</translation>
    </message>
    <message>
        <source>Get a key from the bridge (press its link button); store it beside the other bridges</source>
        <translation>Einen Schlüssel von der Bridge holen (Link-Taste drücken); neben den anderen Bridges speichern</translation>
    </message>
    <message>
        <source>Show each paired bridge and whether it answers (--json too)</source>
        <translation>Jede gekoppelte Bridge zeigen und ob sie antwortet (auch --json)</translation>
    </message>
    <message>
        <source>Print each change of a lamp or room as the bridge pushes it, until Ctrl+C (--json too)</source>
        <translation>Jede Änderung einer Lampe oder eines Raums ausgeben, sobald die Bridge sie meldet, bis Strg+C (auch --json)</translation>
    </message>
    <message>
        <source>List the global shortcuts, their keys and what each does (--json too)</source>
        <translation>Die globalen Tastenkürzel auflisten, ihre Tasten und was jedes tut (auch --json)</translation>
    </message>
    <message>
        <source> or </source>
        <translation> oder </translation>
    </message>
    <message>
        <source>Numbers are never negative here, not %1 (a room gets dimmer with &apos;darker N&apos;).</source>
        <translation>Zahlen sind hier nie negativ, nicht %1 (ein Raum wird mit „darker N“ dunkler).</translation>
    </message>
    <message>
        <source>--%1 is given more than once.</source>
        <translation>--%1 ist mehrfach angegeben.</translation>
    </message>
    <message>
        <source>--with-key is no more: the records carry no key. The key is stored in the settings file (%1).</source>
        <translation>--with-key gibt es nicht mehr: Die Einträge enthalten keinen Schlüssel. Der Schlüssel steht in der Einstellungsdatei (%1).</translation>
    </message>
    <message>
        <source>No command given.</source>
        <translation>Kein Befehl angegeben.</translation>
    </message>
    <message>
        <source>Unknown command %1.</source>
        <translation>Unbekannter Befehl %1.</translation>
    </message>
    <message>
        <source>--%1 goes with %2 only, not with %3.</source>
        <translation>--%1 gehört nur zu %2, nicht zu %3.</translation>
    </message>
    <message>
        <source>--pick takes a bridge id (16 hexadecimal digits, as discover lists them), not %1.</source>
        <translation>--pick erwartet eine Bridge-ID (16 Hexadezimalziffern, wie discover sie auflistet), nicht %1.</translation>
    </message>
    <message>
        <source>--bridge-id takes a bridge id (16 hexadecimal digits, as status lists them), not %1.</source>
        <translation>--bridge-id erwartet eine Bridge-ID (16 Hexadezimalziffern, wie status sie auflistet), nicht %1.</translation>
    </message>
    <message>
        <source>pair takes --pick, or --bridge and --bridge-id, not both.</source>
        <translation>pair nimmt --pick oder --bridge und --bridge-id, nicht beides.</translation>
    </message>
    <message>
        <source>--discovery-url takes an http or https URL (an empty one switches the service off), not %1.</source>
        <translation>--discovery-url erwartet eine http- oder https-URL (eine leere schaltet den Dienst ab), nicht %1.</translation>
    </message>
    <message>
        <source>--bridge takes HOST, HOST:PORT, https://HOST[:PORT] or http://HOST[:PORT], not %1.</source>
        <translation>--bridge erwartet HOST, HOST:PORT, https://HOST[:PORT] oder http://HOST[:PORT], nicht %1.</translation>
    </message>
    <message>
        <source>--key takes the bridge&apos;s key (letters, digits, &apos;-&apos;, &apos;_&apos;, &apos;.&apos;, &apos;~&apos;), not %1.</source>
        <translation>--key erwartet den Schlüssel der Bridge (Buchstaben, Ziffern, &apos;-&apos;, &apos;_&apos;, &apos;.&apos;, &apos;~&apos;), nicht %1.</translation>
    </message>
    <message>
        <source>--settings takes a file name.</source>
        <translation>--settings erwartet einen Dateinamen.</translation>
    </message>
    <message>
        <source>glowdeckctl: %1
Try &apos;glowdeckctl --help&apos;.
</source>
        <translation>glowdeckctl: %1
Hilfe gibt „glowdeckctl --help“.
</translation>
    </message>
    <message>
        <source>Usage: glowdeckctl [OPTIONS] COMMAND [ARGUMENTS]

</source>
        <translation>Aufruf: glowdeckctl [OPTIONEN] BEFEHL [ARGUMENTE]

</translation>
    </message>
    <message>
        <source>Controls the Philips Hue lamps of the bridges Glowdeck is paired with.</source>
        <translation>Steuert die Philips-Hue-Lampen der Bridges, mit denen Glowdeck gekoppelt ist.</translation>
    </message>
    <message>
        <source>Commands:
</source>
        <translation>Befehle:
</translation>
    </message>
    <message>
        <source>
CHANGE of light and room:
</source>
        <translation>
CHANGE (Änderung) für light und room:
</translation>
    </message>
    <message>
        <source>
Options:
</source>
        <translation>
Optionen:
</translation>
    </message>
    <message>
        <source>talk to the bridges even while Glowdeck runs (lists, changes, all-on, all-off); otherwise these go through the running Glowdeck, whose window shows them at once</source>
        <translation>direkt mit den Bridges sprechen, auch während Glowdeck läuft (Listen, Änderungen, all-on, all-off); sonst geht dies über das laufende Glowdeck, dessen Fenster es sofort zeigt</translation>
    </message>
    <message>
        <source>bridge address for this run (HOST, HOST:PORT, https://HOST[:PORT] or http://HOST[:PORT]); only pair stores it (once it has a key)</source>
        <translation>Bridge-Adresse für diesen Aufruf (HOST, HOST:PORT, https://HOST[:PORT] oder http://HOST[:PORT]); nur pair speichert sie (sobald es einen Schlüssel hat)</translation>
    </message>
    <message>
        <source>the paired bridge for this run; without it lists, watch, status, all-on and all-off serve every paired bridge, and a change the bridge with its id or name</source>
        <translation>die gekoppelte Bridge für diesen Aufruf; ohne sie gelten Listen, watch, status, all-on und all-off für jede gekoppelte Bridge und eine Änderung für die Bridge mit dieser ID oder diesem Namen</translation>
    </message>
    <message>
        <source>bridge key for this run (not stored)</source>
        <translation>Bridge-Schlüssel für diesen Aufruf (wird nicht gespeichert)</translation>
    </message>
    <message>
        <source>settings file holding the paired bridges; default $GLOWDECK_SETTINGS, else </source>
        <translation>Einstellungsdatei mit den gekoppelten Bridges; Vorgabe $GLOWDECK_SETTINGS, sonst </translation>
    </message>
    <message>
        <source>also trust this authority (PEM) for the bridge&apos;s certificate (a test bridge)</source>
        <translation>dieser Zertifizierungsstelle (PEM) für das Zertifikat der Bridge ebenfalls vertrauen (eine Test-Bridge)</translation>
    </message>
    <message>
        <source>lights, rooms, scenes, discover: print the records as one JSON array, each with its &quot;bridge_id&quot;; status: one JSON object; watch: each change as one JSON object a line, with the field names of the lists</source>
        <translation>lights, rooms, scenes, discover: die Einträge als ein JSON-Array ausgeben, jeder mit seiner &quot;bridge_id&quot;; status: ein JSON-Objekt; watch: jede Änderung als ein JSON-Objekt pro Zeile, mit den Feldnamen der Listen</translation>
    </message>
    <message>
        <source>all-off: have the bridge switch off in %1 minutes</source>
        <translation>all-off: die Bridge in %1 Minuten ausschalten lassen</translation>
    </message>
    <message>
        <source>pair: keep asking every second for SECONDS (%1) while you press the link button</source>
        <translation>pair: SECONDS (%1) lang jede Sekunde fragen, während die Link-Taste gedrückt wird</translation>
    </message>
    <message>
        <source>discover: the discovery service to ask; default $GLOWDECK_DISCOVERY_URL, else Philips&apos; public service; an empty URL asks no service</source>
        <translation>discover: der zu fragende Suchdienst; Vorgabe $GLOWDECK_DISCOVERY_URL, sonst der öffentliche Dienst von Philips; eine leere URL fragt keinen Dienst</translation>
    </message>
    <message>
        <source>discover, pair: the bridge found with this id, when several answer</source>
        <translation>discover, pair: die gefundene Bridge mit dieser ID, wenn mehrere antworten</translation>
    </message>
    <message>
        <source>show this help</source>
        <translation>diese Hilfe zeigen</translation>
    </message>
    <message>
        <source>show the version</source>
        <translation>die Version zeigen</translation>
    </message>
    <message>
        <source>Each bridge&apos;s address and key are kept in the settings file: &apos;discover --pick ID&apos; stores the address, &apos;pair&apos; the key, and the other commands use them. A lamp, room or scene is named by its id or, when no record has that id, by its name; an id found on several paired bridges needs --bridge-id.</source>
        <translation>Adresse und Schlüssel jeder Bridge stehen in der Einstellungsdatei: „discover --pick ID“ speichert die Adresse, „pair“ den Schlüssel, und die anderen Befehle verwenden sie. Eine Lampe, ein Raum oder eine Szene wird per ID genannt oder, wenn kein Eintrag diese ID hat, per Name; eine ID auf mehreren gekoppelten Bridges braucht --bridge-id.</translation>
    </message>
    <message>
        <source>A change is done once the bridge has answered it, or once the running Glowdeck has queued it; every wait is bounded (a list 10 s, a change 5 s, pairing and discovery 15 s). watch runs until Ctrl+C (or SIGTERM), then exits 0.</source>
        <translation>Eine Änderung ist erledigt, sobald die Bridge sie beantwortet oder das laufende Glowdeck sie eingereiht hat; jedes Warten ist begrenzt (eine Liste 10 s, eine Änderung 5 s, Koppeln und Suche 15 s). watch läuft bis Strg+C (oder SIGTERM) und endet dann mit 0.</translation>
    </message>
    <message>
        <source>Exit status: 0 done; 1 no bridge was found, or it could not be reached, paired with or used, it refused or did not answer a change, no lamp, room or scene has that id or name (or there is no event stream to watch), or the settings file could not be written (a list still shows the bridges that answered); 2 bad command line, a --bridge-id that is not paired, or an id or name that fits several (nothing is sent).</source>
        <translation>Rückgabewert: 0 erledigt; 1 keine Bridge gefunden, oder sie war nicht erreichbar, nicht zu koppeln oder zu nutzen, sie hat eine Änderung abgelehnt oder nicht beantwortet, keine Lampe, kein Raum und keine Szene hat diese ID oder diesen Namen (oder es gibt keinen Ereignisstrom zum Beobachten), oder die Einstellungsdatei ließ sich nicht schreiben (eine Liste zeigt trotzdem die Bridges, die geantwortet haben); 2 fehlerhafte Befehlszeile, eine nicht gekoppelte --bridge-id oder eine ID oder ein Name, der auf mehrere passt (nichts wird gesendet).</translation>
    </message>
    <message>
        <source>none is</source>
        <translation>keine ist es</translation>
    </message>
    <message>
        <source>paired: </source>
        <translation>gekoppelt: </translation>
    </message>
    <message>
        <source>No bridge %1 is paired in %2; %3.</source>
        <translation>Keine Bridge %1 ist in %2 gekoppelt; %3.</translation>
    </message>
    <message>
        <source>--key is the key of one bridge: name it with --bridge-id or --bridge.</source>
        <translation>--key ist der Schlüssel einer Bridge: sie mit --bridge-id oder --bridge nennen.</translation>
    </message>
    <message>
        <source>No bridge address and key</source>
        <translation>Keine Bridge-Adresse und kein Schlüssel</translation>
    </message>
    <message>
        <source>No bridge address</source>
        <translation>Keine Bridge-Adresse</translation>
    </message>
    <message>
        <source>No bridge key</source>
        <translation>Kein Bridge-Schlüssel</translation>
    </message>
    <message>
        <source>stored in %1</source>
        <translation>in %1 gespeichert</translation>
    </message>
    <message>
        <source>known: there is no settings file %1</source>
        <translation>bekannt: Es gibt keine Einstellungsdatei %1</translation>
    </message>
    <message>
        <source>%1 %2.
Run &apos;glowdeckctl discover&apos; and &apos;glowdeckctl pair&apos; first, or pass --bridge HOST[:PORT] and --key KEY.</source>
        <translation>%1 %2.
Zuerst „glowdeckctl discover“ und „glowdeckctl pair“ ausführen oder --bridge HOST[:PORT] und --key KEY angeben.</translation>
    </message>
    <message>
        <source>The bridge address %1 is not HOST[:PORT] or https://HOST[:PORT].</source>
        <translation>Die Bridge-Adresse %1 ist weder HOST[:PORT] noch https://HOST[:PORT].</translation>
    </message>
    <message>
        <source>The key stored in %1 goes only to bridge %2. For another bridge pass --key KEY, or pair with it: glowdeckctl pair --bridge %3</source>
        <translation>Der in %1 gespeicherte Schlüssel geht nur an die Bridge %2. Für eine andere Bridge --key KEY angeben oder mit ihr koppeln: glowdeckctl pair --bridge %3</translation>
    </message>
    <message>
        <source>at %1</source>
        <translation>unter %1</translation>
    </message>
    <message>
        <source>Bridge %1 at %2 was paired over HTTPS; its key is not sent over plain HTTP.
%3</source>
        <translation>Die Bridge %1 unter %2 wurde über HTTPS gekoppelt; ihr Schlüssel wird nicht über einfaches HTTP gesendet.
%3</translation>
    </message>
    <message>
        <source>%1 does not say which bridge its key belongs to, so it goes to %2 only; the bridge at %3 cannot prove to be that bridge.</source>
        <translation>%1 sagt nicht, zu welcher Bridge der Schlüssel gehört, daher geht er nur an %2; die Bridge unter %3 kann nicht beweisen, diese Bridge zu sein.</translation>
    </message>
    <message>
        <source>Bridge %1 was paired over plain HTTP, so its key goes to %2 only, not to %3.</source>
        <translation>Die Bridge %1 wurde über einfaches HTTP gekoppelt, daher geht ihr Schlüssel nur an %2, nicht an %3.</translation>
    </message>
    <message>
        <source>The key of bridge %1 is not sent over plain HTTP, where %2 cannot prove to be that bridge.</source>
        <translation>Der Schlüssel der Bridge %1 wird nicht über einfaches HTTP gesendet, wo %2 nicht beweisen kann, diese Bridge zu sein.</translation>
    </message>
    <message>
        <source>The bridge at %1 refused %2: %3.</source>
        <translation>Die Bridge unter %1 hat %2 abgelehnt: %3.</translation>
    </message>
    <message>
        <source>The bridge at %1 answered %2 with HTTP status %3.</source>
        <translation>Die Bridge unter %1 hat %2 mit HTTP-Status %3 beantwortet.</translation>
    </message>
    <message>
        <source>The bridge at %1 answered %2 with something that is not a Hue bridge&apos;s answer; the change may not have been made.</source>
        <translation>Die Bridge unter %1 hat %2 mit etwas beantwortet, das keine Antwort einer Hue-Bridge ist; die Änderung wurde vielleicht nicht ausgeführt.</translation>
    </message>
    <message>
        <source>The bridge at %1 did not answer %2 in time (%3 s without data, or %4 s in all); the change may not have been made.</source>
        <translation>Die Bridge unter %1 hat %2 nicht rechtzeitig beantwortet (%3 s ohne Daten oder %4 s insgesamt); die Änderung wurde vielleicht nicht ausgeführt.</translation>
    </message>
    <message>
        <source>The bridge at %1 did not answer %2: %3.</source>
        <translation>Die Bridge unter %1 hat %2 nicht beantwortet: %3.</translation>
    </message>
    <message>
        <source>This command is not run here.</source>
        <translation>Dieser Befehl wird hier nicht ausgeführt.</translation>
    </message>
    <message>
        <source>Bridge %1 is missing from the list.</source>
        <translation>Die Bridge %1 fehlt in der Liste.</translation>
    </message>
    <message>
        <source>Nothing was sent: a bridge that did not answer may have a light %1 too; name the bridge with --bridge-id ID.</source>
        <translation>Nichts wurde gesendet: Eine Bridge, die nicht geantwortet hat, kann auch eine Lampe %1 haben; die Bridge mit --bridge-id ID nennen.</translation>
    </message>
    <message>
        <source>Nothing was sent: a bridge that did not answer may have a room %1 too; name the bridge with --bridge-id ID.</source>
        <translation>Nichts wurde gesendet: Eine Bridge, die nicht geantwortet hat, kann auch einen Raum %1 haben; die Bridge mit --bridge-id ID nennen.</translation>
    </message>
    <message>
        <source>Nothing was sent: a bridge that did not answer may have a scene %1 too; name the bridge with --bridge-id ID.</source>
        <translation>Nichts wurde gesendet: Eine Bridge, die nicht geantwortet hat, kann auch eine Szene %1 haben; die Bridge mit --bridge-id ID nennen.</translation>
    </message>
    <message>
        <source>The lights go off at %1.
</source>
        <translation>Die Lampen gehen um %1 aus.
</translation>
    </message>
    <message>
        <source>Nothing was sent to the bridge.</source>
        <translation>Nichts wurde an die Bridge gesendet.</translation>
    </message>
    <message>
        <source>Gave up: the Hue bridge at %1 made no progress for %2 seconds.</source>
        <translation>Aufgegeben: Die Hue-Bridge unter %1 kam %2 Sekunden lang nicht voran.</translation>
    </message>
    <message>
        <source>--trust-root: %1.</source>
        <translation>--trust-root: %1.</translation>
    </message>
    <message>
        <source>also trusting %1 (%2) for the bridge&apos;s certificate.</source>
        <translation>vertraue für das Zertifikat der Bridge auch %1 (%2).</translation>
    </message>
    <message>
        <source>No Hue bridge found on this network.</source>
        <translation>Keine Hue-Bridge in diesem Netzwerk gefunden.</translation>
    </message>
    <message>
        <source>A bridge whose address you know: glowdeckctl pair --bridge HOST[:PORT]</source>
        <translation>Eine Bridge mit bekannter Adresse: glowdeckctl pair --bridge HOST[:PORT]</translation>
    </message>
    <message>
        <source>Found a Hue bridge at %1: %2 (%3).</source>
        <translation>Hue-Bridge unter %1 gefunden: %2 (%3).</translation>
    </message>
    <message>
        <source>No bridge %1 answered; nothing was stored.</source>
        <translation>Keine Bridge %1 hat geantwortet; nichts wurde gespeichert.</translation>
    </message>
    <message>
        <source>Nothing was stored; store a bridge&apos;s address with: glowdeckctl discover --pick ID</source>
        <translation>Nichts wurde gespeichert; die Adresse einer Bridge speichert: glowdeckctl discover --pick ID</translation>
    </message>
    <message>
        <source>Several bridges answered; pair with yours with: glowdeckctl pair --pick ID</source>
        <translation>Mehrere Bridges haben geantwortet; mit der eigenen koppeln: glowdeckctl pair --pick ID</translation>
    </message>
    <message>
        <source>A bridge was reported at %1, which is not HOST[:PORT]; nothing was stored.</source>
        <translation>Eine Bridge wurde unter %1 gemeldet, das ist nicht HOST[:PORT]; nichts wurde gespeichert.</translation>
    </message>
    <message>
        <source>Its address was not stored: %1.</source>
        <translation>Ihre Adresse wurde nicht gespeichert: %1.</translation>
    </message>
    <message>
        <source>Stored %1 as the bridge address in %2; next: glowdeckctl pair</source>
        <translation>%1 als Bridge-Adresse in %2 gespeichert; als Nächstes: glowdeckctl pair</translation>
    </message>
    <message>
        <source>No bridge %1 is stored in %2; pair it with --pick %1 or --bridge HOST[:PORT].</source>
        <translation>Keine Bridge %1 ist in %2 gespeichert; mit --pick %1 oder --bridge HOST[:PORT] koppeln.</translation>
    </message>
    <message>
        <source>No bridge address stored in %1.
Run &apos;glowdeckctl discover&apos; first, or pass --bridge HOST[:PORT].</source>
        <translation>Keine Bridge-Adresse in %1 gespeichert.
Zuerst „glowdeckctl discover“ ausführen oder --bridge HOST[:PORT] angeben.</translation>
    </message>
    <message>
        <source>The stored bridge address %1 is not HOST[:PORT]; run &apos;glowdeckctl discover&apos; or pass --bridge.</source>
        <translation>Die gespeicherte Bridge-Adresse %1 ist nicht HOST[:PORT]; „glowdeckctl discover“ ausführen oder --bridge angeben.</translation>
    </message>
    <message>
        <source>Press the link button on the bridge at %1; waiting up to %2 seconds.</source>
        <translation>Die Link-Taste der Bridge unter %1 drücken; es wird bis zu %2 Sekunden gewartet.</translation>
    </message>
    <message>
        <source>The bridge at %1 gave a key, but reading its lamps failed (%2); nothing was stored.</source>
        <translation>Die Bridge unter %1 hat einen Schlüssel gegeben, aber ihre Lampen ließen sich nicht lesen (%2); nichts wurde gespeichert.</translation>
    </message>
    <message>
        <source>Paired with bridge %1 at %2 over %3: %4, %5, %6.</source>
        <translation>Mit der Bridge %1 unter %2 über %3 gekoppelt: %4, %5, %6.</translation>
    </message>
    <message numerus="yes">
        <source>%n lights</source>
        <translation>
            <numerusform>%n Lampe</numerusform>
            <numerusform>%n Lampen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n rooms</source>
        <translation>
            <numerusform>%n Raum</numerusform>
            <numerusform>%n Räume</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n scenes</source>
        <translation>
            <numerusform>%n Szene</numerusform>
            <numerusform>%n Szenen</numerusform>
        </translation>
    </message>
    <message>
        <source>The key was not stored, so it is lost: %1.
Make the settings file writable (or pass --settings FILE) and pair again.</source>
        <translation>Der Schlüssel wurde nicht gespeichert und ist damit verloren: %1.
Die Einstellungsdatei beschreibbar machen (oder --settings FILE angeben) und erneut koppeln.</translation>
    </message>
    <message>
        <source>Stored its address and key in %1.</source>
        <translation>Adresse und Schlüssel in %1 gespeichert.</translation>
    </message>
    <message>
        <source>No bridge %1 is paired in %2; stored: %3.</source>
        <translation>Keine Bridge %1 ist in %2 gekoppelt; gespeichert: %3.</translation>
    </message>
    <message>
        <source>Bridge</source>
        <translation>Bridge</translation>
    </message>
    <message>
        <source>no bridge address stored; run glowdeckctl discover</source>
        <translation>keine Bridge-Adresse gespeichert; glowdeckctl discover ausführen</translation>
    </message>
    <message>
        <source>the stored address is not HOST[:PORT]; run glowdeckctl discover</source>
        <translation>die gespeicherte Adresse ist nicht HOST[:PORT]; glowdeckctl discover ausführen</translation>
    </message>
    <message>
        <source>Bridge id</source>
        <translation>Bridge-ID</translation>
    </message>
    <message>
        <source>Transport</source>
        <translation>Transport</translation>
    </message>
    <message>
        <source>answers; no key yet: run glowdeckctl pair</source>
        <translation>antwortet; noch kein Schlüssel: glowdeckctl pair ausführen</translation>
    </message>
    <message>
        <source>answers (%1)</source>
        <translation>antwortet (%1)</translation>
    </message>
    <message>
        <source>Interface</source>
        <translation>Schnittstelle</translation>
    </message>
    <message>
        <source>unknown (the bridge is busy)</source>
        <translation>unbekannt (die Bridge ist ausgelastet)</translation>
    </message>
    <message>
        <source>answers, but sent no lamps for this key; run glowdeckctl pair</source>
        <translation>antwortet, sendet aber für diesen Schlüssel keine Lampen; glowdeckctl pair ausführen</translation>
    </message>
    <message>
        <source>answers too slowly: gave up on its lamps after %1 s</source>
        <translation>antwortet zu langsam: Lampen nach %1 s aufgegeben</translation>
    </message>
    <message>
        <source>does not answer</source>
        <translation>antwortet nicht</translation>
    </message>
    <message>
        <source>answers, but its lamps cannot be read</source>
        <translation>antwortet, aber ihre Lampen lassen sich nicht lesen</translation>
    </message>
    <message>
        <source>no event stream over plain HTTP</source>
        <translation>kein Ereignisstrom über einfaches HTTP</translation>
    </message>
    <message>
        <source>the event stream did not answer within %1 s</source>
        <translation>der Ereignisstrom hat nicht innerhalb von %1 s geantwortet</translation>
    </message>
    <message>
        <source>Updates</source>
        <translation>Aktualisierung</translation>
    </message>
    <message>
        <source>live updates (the bridge pushes its changes)</source>
        <translation>live (die Bridge meldet ihre Änderungen)</translation>
    </message>
    <message>
        <source>reading every %1 s (%2)</source>
        <translation>Lesen alle %1 s (%2)</translation>
    </message>
    <message>
        <source>Settings file</source>
        <translation>Einstellungsdatei</translation>
    </message>
    <message>
        <source> (not there yet)</source>
        <translation> (noch nicht vorhanden)</translation>
    </message>
    <message>
        <source>Glowdeck</source>
        <translation>Glowdeck</translation>
    </message>
    <message>
        <source>running: lists and changes go through it</source>
        <translation>läuft: Listen und Änderungen gehen darüber</translation>
    </message>
    <message>
        <source>not running with this settings file</source>
        <translation>läuft nicht mit dieser Einstellungsdatei</translation>
    </message>
    <message>
        <source>Bridge name</source>
        <translation>Bridge-Name</translation>
    </message>
    <message>
        <source>Bridge address</source>
        <translation>Bridge-Adresse</translation>
    </message>
    <message>
        <source> (from --bridge)</source>
        <translation> (aus --bridge)</translation>
    </message>
    <message>
        <source>Key stored</source>
        <translation>Schlüssel gespeichert</translation>
    </message>
    <message>
        <source>yes</source>
        <translation>ja</translation>
    </message>
    <message>
        <source>no</source>
        <translation>nein</translation>
    </message>
    <message>
        <source> (this run uses --key)</source>
        <translation> (dieser Aufruf verwendet --key)</translation>
    </message>
    <message>
        <source>bridge %1, not stored</source>
        <translation>Bridge %1, nicht gespeichert</translation>
    </message>
    <message>
        <source>the first bridge</source>
        <translation>die erste Bridge</translation>
    </message>
    <message>
        <source>room %1 on</source>
        <translation>Raum %1 an</translation>
    </message>
    <message>
        <source>room %1 off</source>
        <translation>Raum %1 aus</translation>
    </message>
    <message>
        <source>room %1 brighter</source>
        <translation>Raum %1 heller</translation>
    </message>
    <message>
        <source>room %1 darker</source>
        <translation>Raum %1 dunkler</translation>
    </message>
    <message>
        <source>nothing</source>
        <translation>nichts</translation>
    </message>
    <message>
        <source>nothing (&quot;%1&quot; is no room action)</source>
        <translation>nichts („%1“ ist keine Raumaktion)</translation>
    </message>
    <message>
        <source>every room on</source>
        <translation>alle Räume an</translation>
    </message>
    <message>
        <source>every room off</source>
        <translation>alle Räume aus</translation>
    </message>
    <message>
        <source>every room brighter by %1</source>
        <translation>alle Räume um %1 heller</translation>
    </message>
    <message>
        <source>every room darker by %1</source>
        <translation>alle Räume um %1 dunkler</translation>
    </message>
    <message>
        <source>every room red</source>
        <translation>alle Räume rot</translation>
    </message>
    <message>
        <source>every room blue</source>
        <translation>alle Räume blau</translation>
    </message>
    <message>
        <source>every room white</source>
        <translation>alle Räume weiß</translation>
    </message>
    <message>
        <source>open or close the Glowdeck window</source>
        <translation>Glowdeck-Fenster öffnen oder schließen</translation>
    </message>
    <message>
        <source>(unreadable)</source>
        <translation>(unlesbar)</translation>
    </message>
    <message>
        <source>NAME</source>
        <translation>NAME</translation>
    </message>
    <message>
        <source>KEYS</source>
        <translation>TASTEN</translation>
    </message>
    <message>
        <source>ACTION</source>
        <translation>AKTION</translation>
    </message>
    <message>
        <source>STATE</source>
        <translation>ZUSTAND</translation>
    </message>
    <message>
        <source>BRIGHTNESS</source>
        <translation>HELLIGKEIT</translation>
    </message>
    <message>
        <source>KIND</source>
        <translation>ART</translation>
    </message>
    <message>
        <source>PRODUCT</source>
        <translation>PRODUKT</translation>
    </message>
    <message>
        <source>TYPE</source>
        <translation>TYP</translation>
    </message>
    <message>
        <source>LIGHTS</source>
        <translation>LAMPEN</translation>
    </message>
    <message>
        <source>ROOM</source>
        <translation>RAUM</translation>
    </message>
    <message>
        <source>Nothing was sent; name one with --bridge-id ID.</source>
        <translation>Nichts wurde gesendet; eine mit --bridge-id ID nennen.</translation>
    </message>
    <message>
        <source> on %1</source>
        <translation> auf %1</translation>
    </message>
    <message>
        <source>The name %1 fits several: %2.</source>
        <translation>Der Name %1 passt auf mehrere: %2.</translation>
    </message>
    <message>
        <source>Nothing was sent; name it by its id.</source>
        <translation>Nichts wurde gesendet; per ID nennen.</translation>
    </message>
    <message>
        <source>BRIDGE</source>
        <translation>BRIDGE</translation>
    </message>
    <message>
        <source>No light with the id or name %1 on this bridge.</source>
        <translation>Keine Lampe mit der ID oder dem Namen %1 auf dieser Bridge.</translation>
    </message>
    <message>
        <source>No light with the id or name %1 on any paired bridge.</source>
        <translation>Keine Lampe mit der ID oder dem Namen %1 auf einer gekoppelten Bridge.</translation>
    </message>
    <message>
        <source>There is a light %1 on several paired bridges: %2.</source>
        <translation>Eine Lampe %1 gibt es auf mehreren gekoppelten Bridges: %2.</translation>
    </message>
    <message>
        <source>No room with the id or name %1 on this bridge.</source>
        <translation>Kein Raum mit der ID oder dem Namen %1 auf dieser Bridge.</translation>
    </message>
    <message>
        <source>No room with the id or name %1 on any paired bridge.</source>
        <translation>Kein Raum mit der ID oder dem Namen %1 auf einer gekoppelten Bridge.</translation>
    </message>
    <message>
        <source>There is a room %1 on several paired bridges: %2.</source>
        <translation>Einen Raum %1 gibt es auf mehreren gekoppelten Bridges: %2.</translation>
    </message>
    <message>
        <source>No scene with the id or name %1 on this bridge.</source>
        <translation>Keine Szene mit der ID oder dem Namen %1 auf dieser Bridge.</translation>
    </message>
    <message>
        <source>No scene with the id or name %1 on any paired bridge.</source>
        <translation>Keine Szene mit der ID oder dem Namen %1 auf einer gekoppelten Bridge.</translation>
    </message>
    <message>
        <source>There is a scene %1 on several paired bridges: %2.</source>
        <translation>Eine Szene %1 gibt es auf mehreren gekoppelten Bridges: %2.</translation>
    </message>
    <message>
        <source>the bridge at %1 is reached over plain HTTP, and its event stream needs HTTPS; glowdeckctl lists show its state</source>
        <translation>die Bridge unter %1 wird über einfaches HTTP erreicht, ihr Ereignisstrom braucht HTTPS; die Listen von glowdeckctl zeigen ihren Zustand</translation>
    </message>
    <message>
        <source>names not read again: %1</source>
        <translation>Namen nicht neu gelesen: %1</translation>
    </message>
    <message>
        <source>watching the bridge at %1; Ctrl+C ends</source>
        <translation>beobachte die Bridge unter %1; Strg+C beendet</translation>
    </message>
    <message>
        <source>event stream of the bridge at %1 open again; changes made meanwhile are not told</source>
        <translation>Ereignisstrom der Bridge unter %1 wieder offen; zwischenzeitliche Änderungen werden nicht gemeldet</translation>
    </message>
    <message>
        <source>event stream: %1</source>
        <translation>Ereignisstrom: %1</translation>
    </message>
    <message>
        <source>event stream lost: %1; reconnecting</source>
        <translation>Ereignisstrom verloren: %1; verbinde erneut</translation>
    </message>
    <message>
        <source>event stream not opened: %1; trying again</source>
        <translation>Ereignisstrom nicht geöffnet: %1; neuer Versuch</translation>
    </message>
    <message>
        <source>the bridge offers no event stream (%1); glowdeckctl lists show its state</source>
        <translation>die Bridge bietet keinen Ereignisstrom (%1); die Listen von glowdeckctl zeigen ihren Zustand</translation>
    </message>
    <message>
        <source>bridge %1 is not watched</source>
        <translation>Bridge %1 wird nicht beobachtet</translation>
    </message>
    <message>
        <source>The bridge at %1 took only part of %2: %3.</source>
        <translation>Die Bridge unter %1 hat %2 nur zum Teil übernommen: %3.</translation>
    </message>
</context>
</TS>
