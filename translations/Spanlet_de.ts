<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>BandwidthSliderWidget</name>
    <message>
        <source>Bandwidth slider (MB/s)</source>
        <translation>Schieberegler der Bandbreite (MB/s)</translation>
    </message>
    <message>
        <source>Bandwidth (MB/s)</source>
        <translation>Bandbreite (MB/s)</translation>
    </message>
    <message>
        <source>Lock camera</source>
        <translation>Kamera sperren</translation>
    </message>
    <message>
        <source>Not sufficient bandwidth allocated.</source>
        <translation>Die zugewiesene Bandbreite reicht nicht aus.</translation>
    </message>
    <message>
        <source>Min to max bandwidth of the camera</source>
        <translation>Kleinste bis größte Bandbreite der Kamera</translation>
    </message>
    <message>
        <source>Lock to exclude camera from Auto Set </source>
        <translation>Sperren, um die Kamera von Auto Set auszunehmen </translation>
    </message>
</context>
<context>
    <name>CameraListModel</name>
    <message>
        <source>Unknown TL</source>
        <translation>Unbekannter TL</translation>
    </message>
    <message>
        <source>Interfaces/Cameras</source>
        <translation>Schnittstellen/Kameras</translation>
    </message>
</context>
<context>
    <name>DelegateWidget</name>
    <message>
        <source>Execute</source>
        <translation>Ausführen</translation>
    </message>
    <message>
        <source>Up to 8 hexadecimal digits</source>
        <translation>Bis zu 8 hexadezimale Ziffern</translation>
    </message>
    <message>
        <source>An IPv4 address, such as 192.168.0.1</source>
        <translation>Eine IPv4-Adresse, zum Beispiel 192.168.0.1</translation>
    </message>
    <message>
        <source>A MAC address, such as 02:00:00:00:00:01</source>
        <translation>Eine MAC-Adresse, zum Beispiel 02:00:00:00:00:01</translation>
    </message>
    <message>
        <source>A whole number from %1 to %2</source>
        <translation>Eine ganze Zahl von %1 bis %2</translation>
    </message>
    <message>
        <source>A number from %1 to %2, with up to 10 decimals after a point</source>
        <translation>Eine Zahl von %1 bis %2, mit bis zu 10 Stellen nach einem Punkt</translation>
    </message>
    <message>
        <source>A number, with up to 10 decimals after a point</source>
        <translation>Eine Zahl, mit bis zu 10 Stellen nach einem Punkt</translation>
    </message>
</context>
<context>
    <name>FeatureTreeDialog</name>
    <message>
        <source>Feature Tree</source>
        <translation>Feature-Baum</translation>
    </message>
    <message>
        <source>&amp;Show only bandwidth relevant features</source>
        <translation>&amp;Nur für die Bandbreite relevante Features anzeigen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Feature Name</source>
        <translation>Feature</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
</context>
<context>
    <name>FeatureTreeModel</name>
    <message>
        <source>[ COMMAND ]</source>
        <translation>[ BEFEHL ]</translation>
    </message>
    <message>
        <source>Feature</source>
        <translation>Feature</translation>
    </message>
    <message>
        <source>&lt;b&gt;%1&lt;/b&gt;&lt;br&gt;%2</source>
        <translation>&lt;b&gt;%1&lt;/b&gt;&lt;br&gt;%2</translation>
    </message>
</context>
<context>
    <name>InterfaceSpeedWidget</name>
    <message>
        <source>Form</source>
        <translation>Formular</translation>
    </message>
    <message>
        <source>Bandwidth of the interface (MB/s)</source>
        <translation>Bandbreite der Schnittstelle (MB/s)</translation>
    </message>
    <message>
        <source>Currently used bandwidth.</source>
        <translation>Derzeit genutzte Bandbreite.</translation>
    </message>
    <message>
        <source>Bandwidth usage</source>
        <translation>Genutzte Bandbreite</translation>
    </message>
    <message>
        <source>Interface bandwidth usage is OK.</source>
        <translation>Die Bandbreite der Schnittstelle reicht aus.</translation>
    </message>
    <message>
        <source>Bandwidth used by connected cameras is greater than it is available on this interface.</source>
        <translation>Die angeschlossenen Kameras nutzen mehr Bandbreite, als an dieser Schnittstelle verfügbar ist.</translation>
    </message>
    <message>
        <source>Bandwidth used by connected cameras affects safety margin on the interface (%1%).</source>
        <translation>Die von den angeschlossenen Kameras genutzte Bandbreite reicht in die Sicherheitsreserve der Schnittstelle (%1&#xa0;%) hinein.</translation>
    </message>
    <message>
        <source>Context menu</source>
        <translation>Kontextmenü</translation>
    </message>
</context>
<context>
    <name>Logging::LogMessageWidget</name>
    <message>
        <source>INFO</source>
        <translation>INFO</translation>
    </message>
    <message>
        <source>WARNING</source>
        <translation>WARNUNG</translation>
    </message>
    <message>
        <source>DEBUG</source>
        <translation>DEBUG</translation>
    </message>
    <message>
        <source>ERROR</source>
        <translation>FEHLER</translation>
    </message>
</context>
<context>
    <name>SettingsDialog</name>
    <message>
        <source>Auto Set Settings</source>
        <translation>Einstellungen für Auto Set</translation>
    </message>
    <message>
        <source>Safety Margins, %</source>
        <translation>Sicherheitsreserven, %</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Safety margins reserve free bandwidth.&lt;br&gt;They are only applied during Auto Set. &lt;/p&gt;
&lt;dl&gt;
&lt;dt&gt;&lt;b&gt;Interface safety margin:&lt;/b&gt;&lt;/dt&gt; &lt;dd&gt;For packet resend, communication and traffic not related to the camera.&lt;br&gt;Bandwidth is &lt;b&gt;subtracted&lt;/b&gt; from the available Bandwidth for the interface.&lt;/dd&gt;
&lt;dt&gt;&lt;b&gt;Camera overhead:&lt;/b&gt;&lt;/dt&gt;&lt;dd&gt; Added for protocol overhead and packet resend (Frame rate will decrease if too small.)&lt;br&gt;Bandwidth is &lt;b&gt;added&lt;/b&gt; to each camera additional to calculated payload needs.&lt;dd&gt;
&lt;/dl&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Sicherheitsreserven halten Bandbreite frei.&lt;br&gt;Sie werden nur bei Auto Set berücksichtigt.&lt;/p&gt;
&lt;dl&gt;
&lt;dt&gt;&lt;b&gt;Sicherheitsreserve der Schnittstelle:&lt;/b&gt;&lt;/dt&gt; &lt;dd&gt;Für wiederholte Pakete, Kommunikation und Datenverkehr, der nicht von der Kamera stammt.&lt;br&gt;Die Bandbreite wird von der verfügbaren Bandbreite der Schnittstelle &lt;b&gt;abgezogen&lt;/b&gt;.&lt;/dd&gt;
&lt;dt&gt;&lt;b&gt;Zuschlag der Kamera:&lt;/b&gt;&lt;/dt&gt;&lt;dd&gt;Für den Aufwand des Protokolls und wiederholte Pakete (ist er zu klein, sinkt die Bildrate).&lt;br&gt;Die Bandbreite wird zum berechneten Nutzdatenbedarf jeder Kamera &lt;b&gt;hinzugerechnet&lt;/b&gt;.&lt;/dd&gt;
&lt;/dl&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>GigE Interface</source>
        <translation>GigE-Schnittstelle</translation>
    </message>
    <message>
        <source>Reset value to default.</source>
        <translation>Wert auf die Vorgabe zurücksetzen.</translation>
    </message>
    <message>
        <source>GigE Camera</source>
        <translation>GigE-Kamera</translation>
    </message>
    <message>
        <source>USB Interface</source>
        <translation>USB-Schnittstelle</translation>
    </message>
    <message>
        <source>USB Camera</source>
        <translation>USB-Kamera</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;The camera safety margins are below the recommended value. The automatically assigned bandwidth may not be suited for the desired frame rate.&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Die Sicherheitsreserven der Kameras liegen unter dem empfohlenen Wert. Die automatisch zugewiesene Bandbreite reicht für die gewünschte Bildrate möglicherweise nicht aus.&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;The theoretical maximum of USB interfaces cannot be reached with U3V cameras. If the safety margin is set below the default value, dropped frames are expected.&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Das theoretische Maximum von USB-Schnittstellen ist mit U3V-Kameras nicht erreichbar. Liegt die Sicherheitsreserve unter der Vorgabe, ist mit verlorenen Bildern zu rechnen.&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;The GigE interface safety margin is below the recommended value. The configuration might not be stable and result in dropped frames.&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Die Sicherheitsreserve der GigE-Schnittstelle liegt unter dem empfohlenen Wert. Die Konfiguration ist möglicherweise nicht stabil und führt zu verlorenen Bildern.&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>GigE Packet Size</source>
        <translation>GigE-Paketgröße</translation>
    </message>
    <message>
        <source>Auto adjust packet size</source>
        <translation>Paketgröße automatisch anpassen</translation>
    </message>
    <message>
        <source>Logging</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>Should the Debug-messages be activated?
Will be saved with submitting the &apos;Settings&apos;-dialog with &apos;OK&apos;.</source>
        <translation>Sollen die Debug-Meldungen aktiviert werden?
Die Auswahl wird gespeichert, wenn Sie die Einstellungen mit „OK“ bestätigen.</translation>
    </message>
    <message>
        <source>Reset GigE Interface</source>
        <translation>GigE-Schnittstelle zurücksetzen</translation>
    </message>
    <message>
        <source>Reset GigE Camera</source>
        <translation>GigE-Kamera zurücksetzen</translation>
    </message>
    <message>
        <source>Reset USB Interface</source>
        <translation>USB-Schnittstelle zurücksetzen</translation>
    </message>
    <message>
        <source>Reset USB Camera</source>
        <translation>USB-Kamera zurücksetzen</translation>
    </message>
</context>
<context>
    <name>SpanletDialog</name>
    <message>
        <source>Orvia Spanlet</source>
        <translation>Orvia Spanlet</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Auswählen</translation>
    </message>
    <message>
        <source>Refresh camera tree</source>
        <translation>Kamerabaum aktualisieren</translation>
    </message>
    <message>
        <source>Select interface for bandwidth management</source>
        <translation>Schnittstelle für die Bandbreitenverwaltung auswählen</translation>
    </message>
    <message>
        <source>Ethernet</source>
        <translation>Ethernet</translation>
    </message>
    <message>
        <source>Statistics</source>
        <translation>Statistik</translation>
    </message>
    <message>
        <source>Start Acquisition (seconds):</source>
        <translation>Aufnahme starten (Sekunden):</translation>
    </message>
    <message>
        <source>Set-up duration</source>
        <translation>Dauer einstellen</translation>
    </message>
    <message>
        <source>Acquire images and statistics</source>
        <translation>Bilder und Statistikwerte aufnehmen</translation>
    </message>
    <message>
        <source>Optimize</source>
        <translation>Optimieren</translation>
    </message>
    <message>
        <source>Optimize bandwidth on selected interface</source>
        <translation>Bandbreite an der ausgewählten Schnittstelle optimieren</translation>
    </message>
    <message>
        <source>&amp;Auto Set</source>
        <translation>&amp;Auto Set</translation>
    </message>
    <message>
        <source>Customize bandwidth management</source>
        <translation>Bandbreitenverwaltung anpassen</translation>
    </message>
    <message>
        <source>&amp;Settings...</source>
        <translation>&amp;Einstellungen...</translation>
    </message>
    <message>
        <source>Adjust</source>
        <translation>Anpassen</translation>
    </message>
    <message>
        <source>Access features of selected camera</source>
        <translation>Auf die Features der ausgewählten Kamera zugreifen</translation>
    </message>
    <message>
        <source>&amp;Feature tree...</source>
        <translation>&amp;Feature-Baum...</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>Information</translation>
    </message>
    <message>
        <source>A&amp;bout</source>
        <translation>Ü&amp;ber</translation>
    </message>
    <message>
        <source>Get started</source>
        <translation>Erste Schritte</translation>
    </message>
    <message>
        <source>&amp;Get Started</source>
        <translation>Erste &amp;Schritte</translation>
    </message>
    <message>
        <source>Show log messages</source>
        <translation>Protokollmeldungen anzeigen</translation>
    </message>
    <message>
        <source>Show Logging</source>
        <translation>Protokoll anzeigen</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>DateTime</source>
        <translation>Datum/Uhrzeit</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Meldung</translation>
    </message>
    <message>
        <source>Auto Set Interface</source>
        <translation>Auto Set der Schnittstelle</translation>
    </message>
    <message>
        <source>Auto Set Camera</source>
        <translation>Auto Set der Kamera</translation>
    </message>
    <message>
        <source>Detected Cameras</source>
        <translation>Gefundene Kameras</translation>
    </message>
    <message>
        <source>Bandwidth (MB/s)</source>
        <translation>Bandbreite (MB/s)</translation>
    </message>
    <message>
        <source>Received
Frames /s</source>
        <translation>Erhaltene
Bilder /s</translation>
    </message>
    <message>
        <source>Received
Payload (MB)</source>
        <translation>Erhaltene
Nutzdaten (MB)</translation>
    </message>
    <message>
        <source>Received
Frames</source>
        <translation>Erhaltene
Bilder</translation>
    </message>
    <message>
        <source>Sent
Frames</source>
        <translation>Gesendete
Bilder</translation>
    </message>
    <message>
        <source>Lost
Frames</source>
        <translation>Verlorene
Bilder</translation>
    </message>
    <message>
        <source>Incomplete
Frames</source>
        <translation>Unvoll­ständige
Bilder</translation>
    </message>
    <message>
        <source>Statistics values, collected during the last acquisition</source>
        <translation>Statistikwerte der letzten Aufnahme</translation>
    </message>
    <message>
        <source>Click the Refresh button to update the camera tree</source>
        <translation>Klicken Sie auf die Schaltfläche „Aktualisieren“, um den Kamerabaum zu erneuern</translation>
    </message>
    <message>
        <source>Interface throughput limit
Current bandwidth assigned to the camera</source>
        <translation>Durchsatzgrenze der Schnittstelle
Derzeit der Kamera zugewiesene Bandbreite</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Über Spanlet</translation>
    </message>
    <message>
        <source>About Qt</source>
        <translation>Über Qt</translation>
    </message>
    <message>
        <source>Spanlet is a Qt application using the OrvCPP API.</source>
        <translation>Spanlet ist eine Qt-Anwendung, die die OrvCPP-API verwendet.</translation>
    </message>
    <message>
        <source>Version: </source>
        <translation>Version: </translation>
    </message>
    <message>
        <source>Orv API Version: </source>
        <translation>Version der Orv-API: </translation>
    </message>
    <message>
        <source>Copyright (c) 2026 The Spanlet authors. BSD 3-Clause License.</source>
        <translation>Copyright (c) 2026 The Spanlet authors. Lizenz: BSD 3-Clause.</translation>
    </message>
    <message>
        <source>About Orvia Spanlet</source>
        <translation>Über Orvia Spanlet</translation>
    </message>
    <message>
        <source>Feature Tree of %1-%2 (%3)</source>
        <translation>Feature-Baum von %1-%2 (%3)</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>Interface</source>
        <translation>Schnittstelle</translation>
    </message>
    <message>
        <source>Benchmark</source>
        <translation>Benchmark</translation>
    </message>
</context>
<context>
    <name>SupportDialog</name>
    <message>
        <source>Spanlet</source>
        <translation>Spanlet</translation>
    </message>
    <message>
        <source>Show this dialog on start of the Spanlet.</source>
        <translation>Diesen Dialog beim Start von Spanlet anzeigen.</translation>
    </message>
    <message>
        <source>:/pages/pages/GetStarted.html</source>
        <comment>The file of the page: each language names one of its own</comment>
        <translation>:/pages/pages/GetStarted_de.html</translation>
    </message>
</context>
</TS>
