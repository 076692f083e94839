<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Losses</name>
    <message>
        <source>%1 frame number</source>
        <translation>%1 Bildnummer</translation>
    </message>
    <message>
        <source>%1 frame numbers</source>
        <translation>%1 Bildnummern</translation>
    </message>
    <message>
        <source>%1 place</source>
        <translation>%1 Stelle</translation>
    </message>
    <message>
        <source>%1 places</source>
        <translation>%1 Stellen</translation>
    </message>
    <message>
        <source>No frame came: the camera waits for triggers.</source>
        <translation>Es kam kein Bild: Die Kamera wartet auf Trigger.</translation>
    </message>
    <message>
        <source>Trigger it, or let it run freely: spanlet set %1 TriggerMode Off</source>
        <translation>Lösen Sie sie aus, oder lassen Sie sie frei laufen: spanlet set %1 TriggerMode Off</translation>
    </message>
    <message>
        <source>%1 came while this program had no free buffer (StreamUnderrunFrameCount).</source>
        <translation>Ohne freien Puffer dieses Programms kamen: %1 (StreamUnderrunFrameCount).</translation>
    </message>
    <message>
        <source>Use more buffers, or return them sooner.</source>
        <translation>Verwenden Sie mehr Puffer, oder geben Sie sie früher zurück.</translation>
    </message>
    <message>
        <source> of %1 bytes</source>
        <translation> von %1 Bytes</translation>
    </message>
    <message>
        <source> The adapter takes packets of up to %1 bytes.</source>
        <translation> Der Netzwerkadapter nimmt Pakete bis %1 Bytes an.</translation>
    </message>
    <message>
        <source>Of %1 the short first and last packets came, and none of the full ones%2 (StreamHollowFrameCount).%3</source>
        <translation>%1: Die kurzen ersten und letzten Pakete kamen an, von den vollen%2 keines (StreamHollowFrameCount).%3</translation>
    </message>
    <message>
        <source>Let the camera find the size that passes: spanlet benchmark --interface %1 --adjust-packet-size. Or permit larger packets (jumbo frames) in the switch and the adapter%2</source>
        <translation>Lassen Sie die Kamera die Größe finden, die durchkommt: spanlet benchmark --interface %1 --adjust-packet-size. Oder erlauben Sie größere Pakete (Jumbo-Frames) im Switch und im Netzwerkadapter%2</translation>
    </message>
    <message>
        <source> of %1 KB</source>
        <translation> von %1 KB</translation>
    </message>
    <message>
        <source>The operating system dropped %1 as the receive buffer%2 of the UDP socket was full (GevStreamDroppedPacketCount).</source>
        <translation>Das Betriebssystem verwarf %1, weil der Empfangspuffer%2 des UDP-Sockets voll war (GevStreamDroppedPacketCount).</translation>
    </message>
    <message>
        <source>Permit a larger buffer: %1. Or receive by the packet ring: %2</source>
        <translation>Erlauben Sie einen größeren Puffer: %1. Oder empfangen Sie über den Paketring: %2</translation>
    </message>
    <message>
        <source>The camera left out %1 in %2: none of about %3 reached the adapter, while of the other %4 %5 went astray.</source>
        <translation>Die Kamera ließ %1 aus (%2): Etwa %3 kamen nie am Netzwerkadapter an, von den anderen Bildern (%4) gingen %5 verloren.</translation>
    </message>
    <message>
        <source>Lower the camera&apos;s frame rate or raise its bandwidth limit, so that it can send every frame: spanlet autoset --interface %1</source>
        <translation>Senken Sie die Bildrate der Kamera, oder erhöhen Sie ihre Bandbreitengrenze, damit sie jedes Bild senden kann: spanlet autoset --interface %1</translation>
    </message>
    <message>
        <source>Of %1, %2 did not come whole; the camera&apos;s link has %3 Mbit/s, less than USB 3.</source>
        <translation>%1, davon %2 nicht vollständig; die Verbindung der Kamera hat %3 Mbit/s, weniger als USB 3.</translation>
    </message>
    <message>
        <source>Use a USB 3 port and cable.</source>
        <translation>Verwenden Sie einen USB-3-Anschluss und ein USB-3-Kabel.</translation>
    </message>
    <message>
        <source>Of %1, %2 did not come whole; the system allows %3 MB of USB memory, and the cameras need %4 MB.</source>
        <translation>%1, davon %2 nicht vollständig; das System erlaubt %3 MB USB-Speicher, die Kameras brauchen %4 MB.</translation>
    </message>
    <message>
        <source>The packet ring of the adapter was full for %1 (GevStreamDroppedPacketCount): this program did not get the processor in time.</source>
        <translation>Der Paketring des Netzwerkadapters war für %1 voll (GevStreamDroppedPacketCount): Dieses Programm bekam den Prozessor nicht rechtzeitig.</translation>
    </message>
    <message>
        <source>End other programs, or give this one more of the processor: sudo renice -n -10 -p $(pidof %1)</source>
        <translation>Beenden Sie andere Programme, oder geben Sie diesem mehr vom Prozessor: sudo renice -n -10 -p $(pidof %1)</translation>
    </message>
    <message>
        <source>About %1 never reached the adapter %2: it received %3 in all.</source>
        <translation>Etwa %1 kamen nie am Netzwerkadapter %2 an: Er empfing insgesamt %3.</translation>
    </message>
    <message>
        <source>About %1 never reached the adapter %2: it received %3 in all, and its error counters did not move.</source>
        <translation>Etwa %1 kamen nie am Netzwerkadapter %2 an: Er empfing insgesamt %3, und seine Fehlerzähler blieben stehen.</translation>
    </message>
    <message>
        <source> %1 came when requested again.</source>
        <translation> Auf erneute Anforderung kamen %1.</translation>
    </message>
    <message>
        <source> The camera no longer had %1 of those requested.</source>
        <translation> Die Kamera hatte %1 der angeforderten nicht mehr.</translation>
    </message>
    <message>
        <source>%1 of %2 cameras lose packets: they may send more than their link carries. Divide it: %3</source>
        <translation>%1 von %2 Kameras verlieren Pakete: Vielleicht senden sie mehr, als ihre Verbindung trägt. Teilen Sie sie auf: %3</translation>
    </message>
    <message>
        <source>Of %1 cameras only this one loses packets: change its cable and its port of the switch.</source>
        <translation>Von %1 Kameras verliert nur diese Pakete: Tauschen Sie ihr Kabel und ihren Anschluss am Switch.</translation>
    </message>
    <message>
        <source>Change the camera&apos;s cable and its port of the switch. If a link on the way is slower than the camera, lower its limit: %1</source>
        <translation>Tauschen Sie das Kabel der Kamera und ihren Anschluss am Switch. Wenn eine Verbindung auf dem Weg langsamer ist als die Kamera, senken Sie deren Grenze: %1</translation>
    </message>
    <message>
        <source>No frame came</source>
        <translation>Es kam kein Bild</translation>
    </message>
    <message>
        <source>No frame was lost</source>
        <translation>Es ging kein Bild verloren</translation>
    </message>
    <message>
        <source>Of %1, %2 were lost and %3 came incomplete</source>
        <translation>%1, davon %2 verloren und %3 unvollständig</translation>
    </message>
    <message>
        <source>; simulated cameras have no counters of a network.</source>
        <translation>; simulierte Kameras haben keine Zähler eines Netzwerks.</translation>
    </message>
    <message>
        <source>; USB has no counter that tells the place.</source>
        <translation>; USB hat keinen Zähler, der den Ort nennt.</translation>
    </message>
    <message>
        <source>; the stream does not count its packets.</source>
        <translation>; der Datenstrom zählt seine Pakete nicht.</translation>
    </message>
    <message>
        <source>; %1 went astray</source>
        <translation>; %1 gingen verloren</translation>
    </message>
    <message>
        <source> and %1 came too late, as the camera or this host paused</source>
        <translation> und %1 kamen zu spät, weil die Kamera oder dieser Computer pausierte</translation>
    </message>
    <message>
        <source>. These counters could not be read: %1.</source>
        <translation>. Diese Zähler konnten nicht gelesen werden: %1.</translation>
    </message>
    <message>
        <source>. The packets that the adapter received could not be counted.</source>
        <translation>. Die Pakete, die der Netzwerkadapter empfing, konnten nicht gezählt werden.</translation>
    </message>
    <message>
        <source>. The adapter received %1 more packets than the streams, so the counters do not tell whether the packets reached it.</source>
        <translation>. Der Netzwerkadapter empfing %1 Pakete mehr als die Datenströme; die Zähler sagen also nicht, ob die Pakete ihn erreichten.</translation>
    </message>
    <message>
        <source>%1 frame</source>
        <translation>%1 Bild</translation>
    </message>
    <message>
        <source>%1 frames</source>
        <translation>%1 Bilder</translation>
    </message>
    <message>
        <source>%1 packet</source>
        <translation>%1 Paket</translation>
    </message>
    <message>
        <source>%1 packets</source>
        <translation>%1 Pakete</translation>
    </message>
    <message>
        <source>The adapter %1 had no room for packets: %2.</source>
        <translation>Der Netzwerkadapter %1 hatte keinen Platz für Pakete: %2.</translation>
    </message>
    <message>
        <source>Give it a longer ring, up to what ethtool -g %1 shows: sudo ethtool -G %1 rx 4096</source>
        <translation>Geben Sie ihm einen längeren Ring, höchstens so lang, wie ethtool -g %1 zeigt: sudo ethtool -G %1 rx 4096</translation>
    </message>
    <message>
        <source>The adapter %1 refused damaged packets: %2.</source>
        <translation>Der Netzwerkadapter %1 wies beschädigte Pakete ab: %2.</translation>
    </message>
    <message>
        <source>Change the cable between the switch and this host.</source>
        <translation>Tauschen Sie das Kabel zwischen dem Switch und diesem Computer.</translation>
    </message>
    <message>
        <source>The driver of the adapter %1 dropped packets: rx_dropped +%2.</source>
        <translation>Der Treiber des Netzwerkadapters %1 verwarf Pakete: rx_dropped +%2.</translation>
    </message>
    <message>
        <source>The driver&apos;s own counters tell why: ethtool -S %1</source>
        <translation>Die Zähler des Treibers nennen den Grund: ethtool -S %1</translation>
    </message>
    <message>
        <source>The operating system&apos;s queue behind the adapters was full: %1, of all adapters.</source>
        <translation>Die Warteschlange des Betriebssystems hinter den Netzwerkadaptern war voll: %1, von allen Adaptern.</translation>
    </message>
    <message>
        <source>Permit a longer queue: sudo sysctl -w net.core.netdev_max_backlog=10000</source>
        <translation>Erlauben Sie eine längere Warteschlange: sudo sysctl -w net.core.netdev_max_backlog=10000</translation>
    </message>
    <message>
        <source>A rule of this host discarded packets: the adapter %1 received %2, and %3 got as far as IP.</source>
        <translation>Eine Regel dieses Computers verwarf Pakete: Der Netzwerkadapter %1 empfing %2, bis zu IP kamen %3.</translation>
    </message>
    <message>
        <source>Look for the rule: tc -s filter show dev %1 ingress; sudo nft list ruleset; ip link show %1 (xdp)</source>
        <translation>Suchen Sie die Regel: tc -s filter show dev %1 ingress; sudo nft list ruleset; ip link show %1 (xdp)</translation>
    </message>
    <message>
        <source>The operating system discarded packets whose sender it would not reach by the adapter that they came through: IPReversePathFilter +%1.</source>
        <translation>Das Betriebssystem verwarf Pakete, deren Absender es nicht über den Netzwerkadapter erreichen würde, durch den sie kamen: IPReversePathFilter +%1.</translation>
    </message>
    <message>
        <source>Give the cameras addresses of the adapter&apos;s network, or permit it: sudo sysctl -w net.ipv4.conf.%1.rp_filter=2 net.ipv4.conf.all.rp_filter=2</source>
        <translation>Geben Sie den Kameras Adressen aus dem Netz des Adapters, oder erlauben Sie es: sudo sysctl -w net.ipv4.conf.%1.rp_filter=2 net.ipv4.conf.all.rp_filter=2</translation>
    </message>
    <message>
        <source>The operating system could not join split packets: Ip ReasmFails +%1.</source>
        <translation>Das Betriebssystem konnte geteilte Pakete nicht zusammensetzen: Ip ReasmFails +%1.</translation>
    </message>
    <message>
        <source>Let the cameras send packets that need not be split: spanlet benchmark --adjust-packet-size</source>
        <translation>Lassen Sie die Kameras Pakete senden, die nicht geteilt werden müssen: spanlet benchmark --adjust-packet-size</translation>
    </message>
    <message>
        <source>The operating system refused damaged packets: Udp InCsumErrors +%1.</source>
        <translation>Das Betriebssystem wies beschädigte Pakete ab: Udp InCsumErrors +%1.</translation>
    </message>
    <message>
        <source>Change the cables of the cameras and of the switch.</source>
        <translation>Tauschen Sie die Kabel der Kameras und des Switches.</translation>
    </message>
    <message>
        <source>Rules of this host&apos;s firewall or routes discarded packets: IP received %1 that it neither delivered nor counted as faulty.</source>
        <translation>Regeln der Firewall oder der Routen dieses Computers verwarfen Pakete: IP empfing %1, die es weder zustellte noch als fehlerhaft zählte.</translation>
    </message>
    <message>
        <source>Permit UDP from the cameras, for example: sudo iptables -I INPUT -i %1 -p udp -j ACCEPT. Or receive by the packet ring: %2</source>
        <translation>Erlauben Sie UDP von den Kameras, zum Beispiel: sudo iptables -I INPUT -i %1 -p udp -j ACCEPT. Oder empfangen Sie über den Paketring: %2</translation>
    </message>
</context>
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
