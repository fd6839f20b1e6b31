<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Lookout::ConnectDialog</name>
    <message>
        <source>&amp;Without encryption (the robot was started with --insecure)</source>
        <translation>&amp;Ohne Verschlüsselung (der Roboter wurde mit --insecure gestartet)</translation>
    </message>
    <message>
        <source>&amp;Forget</source>
        <translation>&amp;Vergessen</translation>
    </message>
    <message>
        <source>Connect to a robot</source>
        <translation>Mit einem Roboter verbinden</translation>
    </message>
    <message>
        <source>&amp;Connect</source>
        <translation>Ver&amp;binden</translation>
    </message>
    <message>
        <source>Robots used before:</source>
        <translation>Zuletzt verwendete Roboter:</translation>
    </message>
    <message>
        <source>name or IP address of the robot</source>
        <translation>Name oder IP-Adresse des Roboters</translation>
    </message>
    <message>
        <source>&amp;Address:</source>
        <translation>&amp;Adresse:</translation>
    </message>
    <message>
        <source>&amp;Port:</source>
        <translation>&amp;Port:</translation>
    </message>
    <message>
        <source>Remove the selected robot from this list</source>
        <translation>Entfernt den gewählten Roboter aus dieser Liste</translation>
    </message>
</context>
<context>
    <name>Lookout::ConnectionWatcher</name>
    <message>
        <source>the connection broke at once</source>
        <translation>die Verbindung brach sofort wieder ab</translation>
    </message>
</context>
<context>
    <name>Lookout::FigureTexts</name>
    <message>
        <source>%1 ms</source>
        <translation>%1 ms</translation>
    </message>
    <message>
        <source>%1 MB/s</source>
        <translation>%1 MB/s</translation>
    </message>
    <message>
        <source>%1 kB/s</source>
        <translation>%1 kB/s</translation>
    </message>
    <message>
        <source>0.%1 s</source>
        <translation>0.%1 s</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>%1 min %2 s</source>
        <translation>%1 min %2 s</translation>
    </message>
</context>
<context>
    <name>Lookout::LogModel</name>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>Stufe</translation>
    </message>
    <message>
        <source>Where</source>
        <translation>Wo</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
</context>
<context>
    <name>Lookout::LogPanel</name>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>C&amp;lear</source>
        <translation>&amp;Leeren</translation>
    </message>
    <message>
        <source>Errors</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Warnings and errors</source>
        <translation>Warnungen und Fehler</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>Hinweise</translation>
    </message>
    <message>
        <source>Everything</source>
        <translation>Alles</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Copy the selected lines, or all that are shown</source>
        <translation>Kopiert die ausgewählten Zeilen oder alle, die zu sehen sind</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Leeren</translation>
    </message>
    <message>
        <source>Show:</source>
        <translation>Anzeigen:</translation>
    </message>
</context>
<context>
    <name>Lookout::MainWindow</name>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>No robot is connected.</source>
        <translation>Kein Roboter ist verbunden.</translation>
    </message>
    <message>
        <source>Plug-ins: %1 loaded</source>
        <translation>Plug-ins: %1 geladen</translation>
    </message>
    <message>
        <source>Plug-ins: %1 loaded, %2 failed: see Help &gt; Plug-ins</source>
        <translation>Plug-ins: %1 geladen, %2 nicht: siehe Hilfe &gt; Plug-ins</translation>
    </message>
    <message>
        <source>About Lookout</source>
        <translation>Über Lookout</translation>
    </message>
    <message>
        <source>&lt;p&gt;&lt;b&gt;Lookout %1&lt;/b&gt;&lt;/p&gt;&lt;p&gt;Shows what robots see.&lt;/p&gt;</source>
        <translation>&lt;p&gt;&lt;b&gt;Lookout %1&lt;/b&gt;&lt;/p&gt;&lt;p&gt;Zeigt, was Roboter sehen.&lt;/p&gt;</translation>
    </message>
    <message>
        <source>&amp;Robot</source>
        <translation>&amp;Roboter</translation>
    </message>
    <message>
        <source>&amp;Connect...</source>
        <translation>&amp;Verbinden ...</translation>
    </message>
    <message>
        <source>Connect to a robot (Ctrl+N)</source>
        <translation>Mit einem Roboter verbinden (Strg+N)</translation>
    </message>
    <message>
        <source>&amp;Open %1</source>
        <translation>%1 ö&amp;ffnen</translation>
    </message>
    <message>
        <source>Plu&amp;g-ins</source>
        <translation>Plu&amp;g-ins</translation>
    </message>
    <message>
        <source>C&amp;lose robot</source>
        <translation>Roboter &amp;schließen</translation>
    </message>
    <message>
        <source>&amp;Preferences...</source>
        <translation>&amp;Einstellungen ...</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Log</source>
        <translation>&amp;Protokoll</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;Plug-ins...</source>
        <translation>&amp;Plug-ins ...</translation>
    </message>
    <message>
        <source>&amp;About Lookout</source>
        <translation>&amp;Über Lookout</translation>
    </message>
    <message>
        <source>Tools</source>
        <translation>Werkzeuge</translation>
    </message>
    <message>
        <source>Plu&amp;g-ins of %1</source>
        <translation>Plu&amp;g-ins von %1</translation>
    </message>
    <message>
        <source>%1 (open)</source>
        <translation>%1 (offen)</translation>
    </message>
    <message>
        <source>Open %1</source>
        <translation>%1 öffnen</translation>
    </message>
</context>
<context>
    <name>Lookout::PictureChoice</name>
    <message>
        <source>Automatic</source>
        <translation>Automatisch</translation>
    </message>
    <message>
        <source>Exact pictures while the link carries them, compressed ones otherwise</source>
        <translation>Genaue Bilder, solange die Verbindung dafür reicht, sonst komprimierte</translation>
    </message>
    <message>
        <source>Exact</source>
        <translation>Genau</translation>
    </message>
    <message>
        <source>Every picture as the camera took it; over a slow link there are few</source>
        <translation>Jedes Bild, wie die Kamera es aufnahm; über eine langsame Verbindung sind es wenige</translation>
    </message>
    <message>
        <source>Saving</source>
        <translation>Sparsam</translation>
    </message>
    <message>
        <source>Compressed pictures that take little of the link, even where it would carry more</source>
        <translation>Komprimierte Bilder, die die Verbindung wenig belasten, auch wo sie mehr tragen würde</translation>
    </message>
</context>
<context>
    <name>Lookout::PictureWatch</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>Lookout::PicturesMenu</name>
    <message>
        <source>Pict&amp;ures of %1</source>
        <translation>B&amp;ilder von %1</translation>
    </message>
    <message>
        <source>Pict&amp;ures</source>
        <translation>B&amp;ilder</translation>
    </message>
</context>
<context>
    <name>Lookout::PluginsDialog</name>
    <message>
        <source>Plug-in</source>
        <translation>Plug-in</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>loaded</source>
        <translation>geladen</translation>
    </message>
    <message>
        <source>Plug-ins</source>
        <translation>Plug-ins</translation>
    </message>
    <message>
        <source>Folder: %1</source>
        <translation>Ordner: %1</translation>
    </message>
</context>
<context>
    <name>Lookout::PreferencesDialog</name>
    <message>
        <source>&amp;Remote control (suppress error dialogs)</source>
        <translation>&amp;Fernsteuerung (Fehlermeldungen unterdrücken)</translation>
    </message>
    <message>
        <source>&amp;Start everything fresh</source>
        <translation>&amp;Alles neu beginnen</translation>
    </message>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>For a Lookout that a script or a robot drives</source>
        <translation>Für ein Lookout, das von einem Skript oder einem Roboter bedient wird</translation>
    </message>
    <message>
        <source>Robots that are connected from now on don&apos;t go on as they were left: with the settings, the plug-ins and the playing picture of last time</source>
        <translation>Roboter, die von nun an verbunden werden, machen nicht dort weiter, wo sie verlassen wurden: mit den Einstellungen, den Plug-ins und dem laufenden Bild vom letzten Mal</translation>
    </message>
</context>
<context>
    <name>Lookout::RobotArea</name>
    <message>
        <source>Connect to a robot...</source>
        <translation>Mit einem Roboter verbinden ...</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>Lookout::RobotDock</name>
    <message>
        <source>Plug-ins ▾</source>
        <translation>Plug-ins ▾</translation>
    </message>
    <message>
        <source>Open another plug-in for this robot</source>
        <translation>Öffnet ein weiteres Plug-in für diesen Roboter</translation>
    </message>
    <message>
        <source>%1, not encrypted</source>
        <translation>%1, unverschlüsselt</translation>
    </message>
    <message>
        <source>%1 (connection lost)</source>
        <translation>%1 (Verbindung verloren)</translation>
    </message>
    <message>
        <source>%1 (silent)</source>
        <translation>%1 (stumm)</translation>
    </message>
    <message>
        <source>%1 (connecting)</source>
        <translation>%1 (wird verbunden)</translation>
    </message>
    <message>
        <source>Connecting to %1...</source>
        <translation>Verbindung zu %1 wird hergestellt ...</translation>
    </message>
    <message>
        <source>Opening %1...</source>
        <translation>%1 wird geöffnet ...</translation>
    </message>
</context>
<context>
    <name>Lookout::RobotSession</name>
    <message>
        <source>Closed</source>
        <translation>Geschlossen</translation>
    </message>
    <message>
        <source>%1. If the robot was started with --insecure, connect to it without encryption.</source>
        <translation>%1. Wurde der Roboter mit --insecure gestartet, dann ohne Verschlüsselung verbinden.</translation>
    </message>
    <message>
        <source>the plug-in made no widget</source>
        <translation>das Plug-in hat keine Ansicht erzeugt</translation>
    </message>
    <message>
        <source>the plug-in failed and did not say why</source>
        <translation>das Plug-in ist gescheitert, ohne zu sagen, warum</translation>
    </message>
    <message>
        <source>%1 can&apos;t be set here</source>
        <translation>%1 lässt sich hier nicht einstellen</translation>
    </message>
    <message>
        <source>%1 is not %2: %3</source>
        <translation>%1 ist nicht %2: %3</translation>
    </message>
</context>
<context>
    <name>Lookout::RobotViews</name>
    <message>
        <source>%1 has no view &quot;%2&quot;; it has: %3</source>
        <translation>%1 hat keine Ansicht „%2“; es hat: %3</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
</context>
<context>
    <name>Lookout::StatusLine</name>
    <message>
        <source>Connecting</source>
        <translation>Wird verbunden</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>Verbunden</translation>
    </message>
    <message>
        <source>Silent, waiting</source>
        <translation>Stumm, es wird gewartet</translation>
    </message>
    <message>
        <source>Connection lost, reconnecting</source>
        <translation>Verbindung verloren, sie wird neu hergestellt</translation>
    </message>
    <message>
        <source>Closed</source>
        <translation>Geschlossen</translation>
    </message>
    <message>
        <source>Not playing</source>
        <translation>Keine Wiedergabe</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>Pausiert</translation>
    </message>
    <message>
        <source>Waiting for a picture</source>
        <translation>Wartet auf ein Bild</translation>
    </message>
    <message>
        <source>Live</source>
        <translation>Live</translation>
    </message>
    <message>
        <source>%1 fps</source>
        <translation>%1 Bilder/s</translation>
    </message>
    <message>
        <source>newest picture %1 ago</source>
        <translation>neuestes Bild vor %1</translation>
    </message>
    <message>
        <source>Whoever is on the network between here and the robot can watch, and can command the robot. To encrypt the connection: make keys on both computers with &apos;ky keys make&apos;, exchange them with &apos;ky keys trust&apos;, start the robot with --keys instead of --insecure, and connect to it again, without the tick at &quot;Without encryption&quot;.</source>
        <translation>Wer sich im Netz zwischen hier und dem Roboter befindet, kann zusehen und dem Roboter befehlen. Um die Verbindung zu verschlüsseln: auf beiden Computern mit „ky keys make“ Schlüssel erzeugen, sie mit „ky keys trust“ austauschen, den Roboter mit --keys statt mit --insecure starten und ihn neu verbinden, ohne Haken bei „Ohne Verschlüsselung“.</translation>
    </message>
    <message>
        <source>No new picture for %1</source>
        <translation>Kein neues Bild seit %1</translation>
    </message>
    <message>
        <source>No picture for %1</source>
        <translation>Kein Bild seit %1</translation>
    </message>
    <message>
        <source>round trip %1</source>
        <translation>Umlaufzeit %1</translation>
    </message>
    <message>
        <source>not encrypted</source>
        <translation>unverschlüsselt</translation>
    </message>
    <message>
        <source>Connection lost: %1. Reconnecting...</source>
        <translation>Verbindung verloren: %1. Sie wird neu hergestellt ...</translation>
    </message>
    <message>
        <source>The robot is silent: %1. Waiting for it...</source>
        <translation>Der Roboter ist stumm: %1. Es wird auf ihn gewartet ...</translation>
    </message>
</context>
<context>
    <name>Lookout::ViewDock</name>
    <message>
        <source>This view fills the screen.</source>
        <translation>Diese Ansicht füllt den Bildschirm.</translation>
    </message>
    <message>
        <source>Bring it &amp;back</source>
        <translation>&amp;Zurückholen</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>%1 - %2</source>
        <translation>%1 – %2</translation>
    </message>
    <message>
        <source>Connecting to %1...</source>
        <translation>Verbindung zu %1 wird hergestellt ...</translation>
    </message>
</context>
<context>
    <name>Lookout::ViewKind</name>
    <message>
        <source>Stage</source>
        <translation>Bühne</translation>
    </message>
    <message>
        <source>&amp;Stage</source>
        <translation>&amp;Bühne</translation>
    </message>
    <message>
        <source>&amp;Another stage</source>
        <translation>&amp;Weitere Bühne</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>F&amp;iles</source>
        <translation>&amp;Dateien</translation>
    </message>
</context>
<context>
    <name>Lookout::ViewsMenu</name>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Full screen</source>
        <translation>&amp;Vollbild</translation>
    </message>
    <message>
        <source>&amp;Wall</source>
        <translation>W&amp;and</translation>
    </message>
    <message>
        <source>The stages of all robots side by side, and nothing else</source>
        <translation>Die Bühnen aller Roboter nebeneinander, und nichts anderes</translation>
    </message>
</context>
<context>
    <name>LookoutWidget</name>
    <message>
        <source>%1 can&apos;t be set here</source>
        <translation>%1 lässt sich hier nicht einstellen</translation>
    </message>
</context>
<context>
    <name>PluginCatalog</name>
    <message>
        <source>not a plug-in: %1</source>
        <translation>kein Plug-in: %1</translation>
    </message>
    <message>
        <source>made for the interface &quot;%1&quot;, but Lookout offers &quot;%2&quot;</source>
        <translation>für die Schnittstelle „%1“ gemacht, Lookout bietet aber „%2“</translation>
    </message>
    <message>
        <source>its object is not a WidgetInterface</source>
        <translation>sein Objekt ist kein WidgetInterface</translation>
    </message>
    <message>
        <source>There is no folder %1 with plug-ins. Name one with --plugins.</source>
        <translation>Es gibt keinen Ordner %1 mit Plug-ins. Einen anderen mit --plugins angeben.</translation>
    </message>
    <message>
        <source>There is no plug-in in %1. Name another folder with --plugins.</source>
        <translation>In %1 ist kein Plug-in. Einen anderen Ordner mit --plugins angeben.</translation>
    </message>
    <message>
        <source>No plug-in in %1 shows robots. See Help &gt; Plug-ins for why.</source>
        <translation>Kein Plug-in in %1 zeigt Roboter. Warum, steht unter Hilfe &gt; Plug-ins.</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Waiting for %1...</source>
        <translation>Warten auf %1 ...</translation>
    </message>
</context>
<context>
    <name>RobotAddress</name>
    <message>
        <source>Type the robot&apos;s name or IP address.</source>
        <translation>Den Namen oder die IP-Adresse des Roboters eingeben.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is no robot&apos;s address: robots listen on ports 1 to 65535</source>
        <translation>„%1“ ist keine Adresse eines Roboters: Roboter lauschen an den Ports 1 bis 65535</translation>
    </message>
</context>
</TS>
