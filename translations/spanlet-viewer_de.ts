<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>QObject</name>
    <message>
        <source>Camera Viewer</source>
        <translation>Kamerabetrachter</translation>
    </message>
</context>
<context>
    <name>StreamingLimits</name>
    <message>
        <source>USB cameras may lose frames: they need %1 MB of USB memory (16 MB each), and the system allows %2 MB. To raise it: %3</source>
        <translation>USB-Kameras können Bilder verlieren: Sie brauchen %1 MB USB-Speicher (je 16 MB), das System erlaubt %2 MB. So wird er erhöht: %3</translation>
    </message>
    <message>
        <source>GigE cameras may lose frames: each stream asks for a receive buffer of %1 KB, and the system allows %2 KB. To raise it: %3. Or, to receive without it, by a packet ring: %4</source>
        <translation>GigE-Kameras können Bilder verlieren: Jeder Datenstrom verlangt einen Empfangspuffer von %1 KB, das System erlaubt %2 KB. So wird er erhöht: %3. Oder, um ohne ihn über einen Paketring zu empfangen: %4</translation>
    </message>
    <message>
        <source>No permission to open these USB3 Vision cameras: %1. To permit them to the user at this computer and to the group video: %2</source>
        <translation>Keine Berechtigung, diese USB3-Vision-Kameras zu öffnen: %1. So werden sie dem Benutzer an diesem Computer und der Gruppe video erlaubt: %2</translation>
    </message>
</context>
<context>
    <name>chart::Drawing</name>
    <message>
        <source>No rates were measured.</source>
        <translation>Es wurden keine Raten gemessen.</translation>
    </message>
    <message>
        <source>Mean rates from %1 s to %2 s, stacked.</source>
        <translation>Mittlere Raten von %1 s bis %2 s, gestapelt.</translation>
    </message>
    <message>
        <source>, %1 times of lost frames</source>
        <translation>, %1 Zeitpunkte mit verlorenen Bildern</translation>
    </message>
    <message>
        <source>Link: %1 MB/s</source>
        <translation>Verbindung: %1 MB/s</translation>
    </message>
    <message>
        <source>Time in s</source>
        <translation>Zeit in s</translation>
    </message>
    <message>
        <source>%1, above this chart</source>
        <translation>%1, oberhalb dieses Diagramms</translation>
    </message>
    <message>
        <source>%1: frames lost from %2 s to %3 s</source>
        <translation>%1: Bilder verloren von %2 s bis %3 s</translation>
    </message>
    <message>
        <source>%1: frames lost at %2 s</source>
        <translation>%1: Bilder verloren bei %2 s</translation>
    </message>
    <message>
        <source>frames lost</source>
        <translation>Bilder verloren</translation>
    </message>
</context>
<context>
    <name>viewer::CameraModel</name>
    <message>
        <source>%1
Serial number: %2
ID: %3</source>
        <translation>%1
Seriennummer: %2
ID: %3</translation>
    </message>
    <message>
        <source>In use</source>
        <translation>Belegt</translation>
    </message>
    <message>
        <source>No answer</source>
        <translation>Keine Antwort</translation>
    </message>
    <message>
        <source>Live</source>
        <translation>Live</translation>
    </message>
    <message>
        <source>Available</source>
        <translation>Verfügbar</translation>
    </message>
</context>
<context>
    <name>viewer::LossWatch</name>
    <message>
        <source>Where frames were lost: %1. %2</source>
        <translation>Wo Bilder verloren gingen: %1. %2</translation>
    </message>
    <message>
        <source>camera</source>
        <translation>Kamera</translation>
    </message>
    <message>
        <source>wire</source>
        <translation>Leitung</translation>
    </message>
    <message>
        <source>adapter</source>
        <translation>Netzwerkadapter</translation>
    </message>
    <message>
        <source>kernel</source>
        <translation>Betriebssystem</translation>
    </message>
    <message>
        <source>path</source>
        <translation>Netzwerkpfad</translation>
    </message>
    <message>
        <source>program</source>
        <translation>Programm</translation>
    </message>
    <message>
        <source>usb</source>
        <translation>USB</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unbekannt</translation>
    </message>
</context>
<context>
    <name>viewer::SpanletLoader</name>
    <message>
        <source>there is no such folder</source>
        <translation>diesen Ordner gibt es nicht</translation>
    </message>
    <message>
        <source>there is no library in this folder</source>
        <translation>in diesem Ordner ist keine Bibliothek</translation>
    </message>
    <message>
        <source>Spanlet cannot be loaded.</source>
        <translation>Spanlet kann nicht geladen werden.</translation>
    </message>
    <message>
        <source>this is no Qt plug-in (%1)</source>
        <translation>das ist kein Qt-Plug-in (%1)</translation>
    </message>
    <message>
        <source>this plug-in has the interface &quot;%1&quot;, not &quot;%2&quot;</source>
        <translation>dieses Plug-in hat die Schnittstelle „%1“, nicht „%2“</translation>
    </message>
    <message>
        <source>this plug-in has another version of the interface &quot;%1&quot;</source>
        <translation>dieses Plug-in hat eine andere Version der Schnittstelle „%1“</translation>
    </message>
</context>
<context>
    <name>viewer::ThroughputDock</name>
    <message>
        <source>Throughput</source>
        <translation>Durchsatz</translation>
    </message>
    <message>
        <source>&amp;Save Throughput as SVG...</source>
        <translation>Durchsatz als &amp;SVG speichern...</translation>
    </message>
    <message>
        <source>%1 cannot be written: %2</source>
        <translation>%1 kann nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>Save the Throughput</source>
        <translation>Durchsatz speichern</translation>
    </message>
    <message>
        <source>throughput</source>
        <translation>durchsatz</translation>
    </message>
    <message>
        <source>Vector graphics (*.svg)</source>
        <translation>Vektorgrafik (*.svg)</translation>
    </message>
</context>
<context>
    <name>viewer::ThroughputPlot</name>
    <message>
        <source>%L1 MB/s</source>
        <translation>%L1 MB/s</translation>
    </message>
    <message>
        <source>now</source>
        <translation>jetzt</translation>
    </message>
    <message>
        <source>%L1 s ago</source>
        <translation>vor %L1 s</translation>
    </message>
    <message>
        <source>Throughput</source>
        <translation>Durchsatz</translation>
    </message>
    <message>
        <source>lost or incomplete: %L1</source>
        <translation>verloren oder unvollständig: %L1</translation>
    </message>
    <message>
        <source>Sum: %1</source>
        <translation>Summe: %1</translation>
    </message>
    <message>
        <source>Link</source>
        <translation>Verbindung</translation>
    </message>
    <message>
        <source>Lost frames</source>
        <translation>Verlorene Bilder</translation>
    </message>
    <message>
        <source>Throughput of the last minute</source>
        <translation>Durchsatz der letzten Minute</translation>
    </message>
</context>
<context>
    <name>viewer::ViewerWindow</name>
    <message>
        <source>Automatic packet size</source>
        <translation>Paketgröße automatisch</translation>
    </message>
    <message>
        <source>Camera Viewer</source>
        <translation>Kamerabetrachter</translation>
    </message>
    <message>
        <source>Images cannot be shown</source>
        <translation>Bilder können nicht gezeigt werden</translation>
    </message>
    <message>
        <source>The camera sends the pixel format %1.</source>
        <translation>Die Kamera sendet das Pixelformat %1.</translation>
    </message>
    <message>
        <source>&amp;Cameras</source>
        <translation>&amp;Kameras</translation>
    </message>
    <message>
        <source>&amp;Refresh</source>
        <translation>&amp;Aktualisieren</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Throughput</source>
        <translation>&amp;Durchsatz</translation>
    </message>
    <message>
        <source>Ctrl+T</source>
        <translation>Ctrl+T</translation>
    </message>
    <message>
        <source>&amp;Tools</source>
        <translation>&amp;Werkzeuge</translation>
    </message>
    <message>
        <source>&amp;Spanlet...</source>
        <translation>&amp;Spanlet...</translation>
    </message>
    <message>
        <source>Spanlet</source>
        <translation>Spanlet</translation>
    </message>
    <message>
        <source>Ctrl+B</source>
        <translation>Ctrl+B</translation>
    </message>
    <message>
        <source>Manage the bandwidth of all cameras</source>
        <translation>Die Bandbreite aller Kameras verwalten</translation>
    </message>
    <message>
        <source>Let GigE cameras negotiate their largest packet size before they stream</source>
        <translation>GigE-Kameras vor dem Streamen ihre größte Paketgröße aushandeln lassen</translation>
    </message>
    <message>
        <source>Lost frames</source>
        <translation>Verlorene Bilder</translation>
    </message>
    <message>
        <source>Look for cameras again</source>
        <translation>Erneut nach Kameras suchen</translation>
    </message>
    <message>
        <source>Spanlet is open</source>
        <translation>Spanlet ist geöffnet</translation>
    </message>
    <message>
        <source>The live image returns when its window is closed.</source>
        <translation>Das Livebild kehrt zurück, wenn sein Fenster geschlossen wird.</translation>
    </message>
    <message>
        <source>%1 was disconnected.</source>
        <translation>%1 wurde getrennt.</translation>
    </message>
    <message>
        <source>1 camera</source>
        <translation>1 Kamera</translation>
    </message>
    <message>
        <source>%1 cameras</source>
        <translation>%1 Kameras</translation>
    </message>
    <message>
        <source>Waiting for the first image. A camera that waits for a trigger sends one with its first trigger.</source>
        <translation>Wartet auf das erste Bild. Eine Kamera, die auf einen Trigger wartet, sendet es mit dem ersten Trigger.</translation>
    </message>
    <message>
        <source>In use by another application</source>
        <translation>Von einer anderen Anwendung belegt</translation>
    </message>
    <message>
        <source>%1 can be shown when the other application has released it.</source>
        <translation>%1 kann gezeigt werden, wenn die andere Anwendung sie freigegeben hat.</translation>
    </message>
    <message>
        <source>The camera does not answer</source>
        <translation>Die Kamera antwortet nicht</translation>
    </message>
    <message>
        <source>Check the cable of %1, its power, and whether its network address can be reached from this computer.</source>
        <translation>Prüfen Sie das Kabel von %1, die Stromversorgung und ob die Netzwerkadresse von diesem Computer aus erreichbar ist.</translation>
    </message>
    <message>
        <source>The camera cannot be opened</source>
        <translation>Die Kamera kann nicht geöffnet werden</translation>
    </message>
    <message>
        <source>%1 answers error %2 of the camera SDK.</source>
        <translation>%1 antwortet mit dem Fehler %2 des Kamera-SDK.</translation>
    </message>
    <message>
        <source>Disconnected</source>
        <translation>Getrennt</translation>
    </message>
    <message>
        <source>%1 was disconnected. Check its cable and its power.</source>
        <translation>%1 wurde getrennt. Prüfen Sie das Kabel und die Stromversorgung.</translation>
    </message>
    <message>
        <source>No cameras found</source>
        <translation>Keine Kameras gefunden</translation>
    </message>
    <message>
        <source>A camera appears here as soon as it is connected.</source>
        <translation>Eine Kamera erscheint hier, sobald sie angeschlossen wird.</translation>
    </message>
    <message>
        <source>No camera selected</source>
        <translation>Keine Kamera ausgewählt</translation>
    </message>
    <message>
        <source>Select a camera on the left to see its live image.</source>
        <translation>Wählen Sie links eine Kamera, um ihr Livebild zu sehen.</translation>
    </message>
    <message>
        <source>%L1 frames/s</source>
        <translation>%L1 Bilder/s</translation>
    </message>
</context>
</TS>
