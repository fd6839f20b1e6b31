<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Dk::FtpDownloadDialog</name>
    <message>
        <source>File Transfer</source>
        <translation>Dateiübertragung</translation>
    </message>
    <message>
        <source>Downloading %1...</source>
        <translation>%1 wird heruntergeladen ...</translation>
    </message>
    <message>
        <source>Unable to save the file %1: %2.</source>
        <translation>Die Datei %1 kann nicht gespeichert werden: %2.</translation>
    </message>
    <message>
        <source>File Transfert</source>
        <translation>Dateiübertragung</translation>
    </message>
    <message>
        <source>Connection error</source>
        <translation>Verbindungsfehler</translation>
    </message>
    <message>
        <source>Unable to connect to the FTP server at %1. Are you sure you are connected to a real robot, and a FTP server is running on it ?</source>
        <translation>Der FTP-Server auf %1 ist nicht zu erreichen. Ist dies wirklich die Verbindung zu einem echten Roboter, und läuft dort ein FTP-Server?</translation>
    </message>
    <message>
        <source>Login failed</source>
        <translation>Anmeldung fehlgeschlagen</translation>
    </message>
    <message>
        <source>Could not login on FTP.</source>
        <translation>Die Anmeldung beim FTP-Server ist fehlgeschlagen.</translation>
    </message>
    <message>
        <source>Download failed</source>
        <translation>Herunterladen fehlgeschlagen</translation>
    </message>
    <message>
        <source>Could not upload %1.</source>
        <translation>%1 konnte nicht heruntergeladen werden.</translation>
    </message>
</context>
<context>
    <name>Dk::GetLoginPasswordDialog</name>
    <message>
        <source>Authentication required</source>
        <translation>Anmeldung erforderlich</translation>
    </message>
    <message>
        <source>Login:</source>
        <translation>Benutzername:</translation>
    </message>
    <message>
        <source>Password:</source>
        <translation>Passwort:</translation>
    </message>
    <message>
        <source>Please authenticate to continue.</source>
        <translation>Zum Fortfahren bitte anmelden.</translation>
    </message>
</context>
<context>
    <name>Downloads</name>
    <message>
        <source>It can&apos;t be saved in %1: %2.</source>
        <translation>Speichern in %1 nicht möglich: %2.</translation>
    </message>
    <message>
        <source>It can&apos;t be saved: %1.</source>
        <translation>Speichern nicht möglich: %1.</translation>
    </message>
</context>
<context>
    <name>FilesList</name>
    <message>
        <source>Photos and films on the robot</source>
        <translation>Fotos und Filme auf dem Roboter</translation>
    </message>
</context>
<context>
    <name>FilesMessage</name>
    <message>
        <source>Message</source>
        <translation>Meldung</translation>
    </message>
</context>
<context>
    <name>FilesModel</name>
    <message>
        <source>Waiting</source>
        <translation>Wartet</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>Not downloaded: %1</source>
        <translation>Nicht heruntergeladen: %1</translation>
    </message>
    <message>
        <source>%1, downloaded</source>
        <translation>%1, heruntergeladen</translation>
    </message>
</context>
<context>
    <name>FilesPanel</name>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Herunterladen</translation>
    </message>
    <message>
        <source>Download To...</source>
        <translation>Herunterladen nach ...</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Copy Path</source>
        <translation>Pfad kopieren</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>Looking...</source>
        <translation>Es wird nachgesehen ...</translation>
    </message>
    <message>
        <source>The robot&apos;s files can&apos;t be reached: %1
Is the robot on, and does its FTP server run?</source>
        <translation>Die Dateien des Roboters sind nicht zu erreichen: %1
Ist der Roboter eingeschaltet, und läuft sein FTP-Server?</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Noch einmal versuchen</translation>
    </message>
    <message>
        <source>The robot shows its files after a login.</source>
        <translation>Der Roboter zeigt seine Dateien nach einer Anmeldung.</translation>
    </message>
    <message>
        <source>Log In...</source>
        <translation>Anmelden ...</translation>
    </message>
    <message>
        <source>The robot refused the user name or the password.</source>
        <translation>Der Roboter hat den Benutzernamen oder das Passwort abgelehnt.</translation>
    </message>
    <message>
        <source>The robot&apos;s files can&apos;t be listed: %1</source>
        <translation>Die Dateien des Roboters lassen sich nicht auflisten: %1</translation>
    </message>
    <message>
        <source>There are no photos and films on the robot yet.</source>
        <translation>Auf dem Roboter sind noch keine Fotos und Filme.</translation>
    </message>
    <message>
        <source>Download To</source>
        <translation>Herunterladen nach</translation>
    </message>
    <message>
        <source>This computer has no program to open %1 with.</source>
        <translation>Dieser Computer hat kein Programm, um %1 zu öffnen.</translation>
    </message>
</context>
<context>
    <name>FilmRecorder</name>
    <message>
        <source>There is no more room in the folder %1 for the film &quot;%2&quot;. Make room there or choose another folder, and film again.</source>
        <translation>Im Ordner %1 ist kein Platz mehr für den Film „%2“. Dort Platz schaffen oder einen anderen Ordner wählen und neu filmen.</translation>
    </message>
    <message>
        <source>The film &quot;%2&quot; can&apos;t grow any larger in the folder %1. Film again for the rest, or choose another folder.</source>
        <translation>Der Film „%2“ kann im Ordner %1 nicht größer werden. Für den Rest neu filmen oder einen anderen Ordner wählen.</translation>
    </message>
    <message>
        <source>The folder %1 can&apos;t be written to. Choose another folder, and film again.</source>
        <translation>In den Ordner %1 kann nicht geschrieben werden. Einen anderen Ordner wählen und neu filmen.</translation>
    </message>
    <message>
        <source>The folder %1 isn&apos;t there. Choose another folder, and film again.</source>
        <translation>Der Ordner %1 ist nicht da. Einen anderen Ordner wählen und neu filmen.</translation>
    </message>
    <message>
        <source>The film &quot;%2&quot; is no longer in the folder %1: it was moved or deleted. Film again, and leave it there until its end.</source>
        <translation>Der Film „%2“ ist nicht mehr im Ordner %1: Er wurde verschoben oder gelöscht. Neu filmen und ihn bis zu seinem Ende dort lassen.</translation>
    </message>
    <message>
        <source>The film &quot;%2&quot; can&apos;t be written to the folder %1: %3. Choose another folder, and film again.</source>
        <translation>Der Film „%2“ kann nicht in den Ordner %1 geschrieben werden: %3. Einen anderen Ordner wählen und neu filmen.</translation>
    </message>
    <message>
        <source>There is no film &quot;%1&quot;: no picture was shown while it was filmed. Play the camera, and film again.</source>
        <translation>Es gibt keinen Film „%1“: Während der Aufnahme war kein Bild zu sehen. Die Kamera abspielen und neu filmen.</translation>
    </message>
    <message>
        <source>The film &quot;%1&quot; can&apos;t go on: %2. Film again, smaller perhaps.</source>
        <translation>Der Film „%1“ kann nicht weitergehen: %2. Neu filmen, vielleicht kleiner.</translation>
    </message>
</context>
<context>
    <name>FtpConnection</name>
    <message>
        <source>&apos;%1&apos; is no name of a computer.</source>
        <translation>„%1“ ist kein Name eines Computers.</translation>
    </message>
    <message>
        <source>A user name or password can&apos;t contain line breaks.</source>
        <translation>Ein Benutzername oder Passwort darf keine Zeilenumbrüche enthalten.</translation>
    </message>
    <message>
        <source>There is no connection to a server.</source>
        <translation>Es besteht keine Verbindung zu einem Server.</translation>
    </message>
    <message>
        <source>Nobody is logged in.</source>
        <translation>Niemand ist angemeldet.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is no file.</source>
        <translation>„%1“ ist keine Datei.</translation>
    </message>
    <message>
        <source>A file whose name contains line breaks can&apos;t be downloaded.</source>
        <translation>Eine Datei, deren Name Zeilenumbrüche enthält, kann nicht heruntergeladen werden.</translation>
    </message>
    <message>
        <source>There is no computer called &apos;%1&apos;.</source>
        <translation>Es gibt keinen Computer namens „%1“.</translation>
    </message>
    <message>
        <source>%1, port %2: %3.</source>
        <translation>%1, Port %2: %3.</translation>
    </message>
    <message>
        <source>%1 does not answer.</source>
        <translation>%1 antwortet nicht.</translation>
    </message>
    <message>
        <source>The server has been silent for %1 s.</source>
        <translation>Der Server ist seit %1 s stumm.</translation>
    </message>
    <message>
        <source>The file is not there, or may not be read. The server answered: %1</source>
        <translation>Die Datei ist nicht da oder darf nicht gelesen werden. Der Server antwortete: %1</translation>
    </message>
    <message>
        <source>The server did not say that the file is complete.</source>
        <translation>Der Server hat nicht gesagt, dass die Datei vollständig ist.</translation>
    </message>
    <message>
        <source>The file can&apos;t be written: %1.</source>
        <translation>Die Datei kann nicht geschrieben werden: %1.</translation>
    </message>
    <message>
        <source>The connection to the server was lost.</source>
        <translation>Die Verbindung zum Server ging verloren.</translation>
    </message>
    <message>
        <source>The server answered: %1</source>
        <translation>Der Server antwortete: %1</translation>
    </message>
    <message>
        <source>A folder whose name contains line breaks can&apos;t be listed.</source>
        <translation>Ein Ordner, dessen Name Zeilenumbrüche enthält, kann nicht aufgelistet werden.</translation>
    </message>
    <message>
        <source>The server&apos;s list of files has no end.</source>
        <translation>Die Dateiliste des Servers hat kein Ende.</translation>
    </message>
</context>
<context>
    <name>FtpErrand</name>
    <message>
        <source>Nobody is logged in.</source>
        <translation>Niemand ist angemeldet.</translation>
    </message>
</context>
<context>
    <name>FtpGreeting</name>
    <message>
        <source>Something answers there, but not as an FTP server does.</source>
        <translation>Dort antwortet etwas, aber nicht wie ein FTP-Server.</translation>
    </message>
    <message>
        <source>The server answered: %1</source>
        <translation>Der Server antwortete: %1</translation>
    </message>
    <message>
        <source>The server closed the connection without a greeting.</source>
        <translation>Der Server hat die Verbindung ohne Begrüßung geschlossen.</translation>
    </message>
</context>
<context>
    <name>FtpListing</name>
    <message>
        <source>The server&apos;s list of files can&apos;t be understood: &quot;%1&quot;.</source>
        <translation>Die Dateiliste des Servers ist nicht zu verstehen: „%1“.</translation>
    </message>
    <message>
        <source>The server lists a file that can&apos;t be: &quot;%1&quot;.</source>
        <translation>Der Server führt eine Datei auf, die es nicht geben kann: „%1“.</translation>
    </message>
    <message>
        <source>There are too many files in the folder to list them.</source>
        <translation>Im Ordner sind zu viele Dateien, um sie aufzulisten.</translation>
    </message>
</context>
<context>
    <name>Module</name>
    <message>
        <source>the robot answers with something that is no image</source>
        <translation>der Roboter antwortet mit etwas, das kein Bild ist</translation>
    </message>
</context>
<context>
    <name>PictureFile</name>
    <message>
        <source>%1 can&apos;t be written: %2. Choose another folder, or make room there.</source>
        <translation>%1 kann nicht geschrieben werden: %2. Einen anderen Ordner wählen oder dort Platz schaffen.</translation>
    </message>
</context>
<context>
    <name>PixelLabel</name>
    <message>
        <source>Pixel under the pointer</source>
        <translation>Pixel unter dem Zeiger</translation>
    </message>
    <message>
        <source>Point at a pixel, with the mouse or with Ctrl and the arrows</source>
        <translation>Auf ein Pixel zeigen, mit der Maus oder mit Strg und den Pfeiltasten</translation>
    </message>
    <message>
        <source>%1, %2 &amp;nbsp; YUV %3 %4 %5 &amp;nbsp; RGB %6 %7 %8</source>
        <translation>%1, %2 &amp;nbsp; YUV %3 %4 %5 &amp;nbsp; RGB %6 %7 %8</translation>
    </message>
</context>
<context>
    <name>ShortcutSheet</name>
    <message>
        <source> or </source>
        <translation> oder </translation>
    </message>
    <message>
        <source>Wheel</source>
        <translation>Mausrad</translation>
    </message>
    <message>
        <source>Zooms around the pointer</source>
        <translation>Zoomt um den Zeiger</translation>
    </message>
    <message>
        <source>Drag</source>
        <translation>Ziehen</translation>
    </message>
    <message>
        <source>Moves the picture</source>
        <translation>Verschiebt das Bild</translation>
    </message>
    <message>
        <source>Double click</source>
        <translation>Doppelklick</translation>
    </message>
    <message>
        <source>Full screen, and back</source>
        <translation>Vollbild und zurück</translation>
    </message>
    <message>
        <source>Right click</source>
        <translation>Rechtsklick</translation>
    </message>
    <message>
        <source>All of this as a menu</source>
        <translation>All dies als Menü</translation>
    </message>
    <message>
        <source>Arrows</source>
        <translation>Pfeiltasten</translation>
    </message>
    <message>
        <source>Move the picture</source>
        <translation>Verschieben das Bild</translation>
    </message>
    <message>
        <source>Ctrl+Arrows</source>
        <translation>Strg+Pfeiltasten</translation>
    </message>
    <message>
        <source>Point at the next pixel</source>
        <translation>Zeigen auf das nächste Pixel</translation>
    </message>
    <message>
        <source>Shortcuts of the stage</source>
        <translation>Tastenkürzel der Bühne</translation>
    </message>
    <message>
        <source>Mouse and arrows</source>
        <translation>Maus und Pfeiltasten</translation>
    </message>
</context>
<context>
    <name>SourcesModel</name>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>hidden</source>
        <translation>ausgeblendet</translation>
    </message>
    <message>
        <source>nothing now</source>
        <translation>zurzeit nichts</translation>
    </message>
    <message>
        <source>newest</source>
        <translation>neueste</translation>
    </message>
    <message>
        <source>on its frame</source>
        <translation>auf seinem Bild</translation>
    </message>
    <message>
        <source>on its frame, %1 ms behind</source>
        <translation>auf seinem Bild, %1 ms zurück</translation>
    </message>
</context>
<context>
    <name>SourcesPanel</name>
    <message>
        <source>Nothing is drawn over the picture. Detections are switched on in the settings below the small picture.</source>
        <translation>Über das Bild wird nichts gezeichnet. Erkennungen werden in den Einstellungen unter dem kleinen Bild eingeschaltet.</translation>
    </message>
    <message>
        <source>Detections on their &amp;frame</source>
        <translation>Erkanntes auf seinem &amp;Bild</translation>
    </message>
    <message>
        <source>What is drawn over the picture</source>
        <translation>Was über das Bild gezeichnet wird</translation>
    </message>
    <message>
        <source>The picture waits until its detections are there, half a second at most, so that they stand on what they were found on</source>
        <translation>Das Bild wartet, bis da ist, was darauf erkannt wurde, höchstens eine halbe Sekunde, damit es auf dem steht, worauf es gefunden wurde</translation>
    </message>
</context>
<context>
    <name>Stage</name>
    <message>
        <source>Stage</source>
        <translation>Bühne</translation>
    </message>
    <message>
        <source>Press to play</source>
        <translation>Zum Abspielen drücken</translation>
    </message>
    <message>
        <source>Stage tools</source>
        <translation>Werkzeuge der Bühne</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>Frozen</source>
        <translation>Eingefroren</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>Pausiert</translation>
    </message>
    <message>
        <source>Stop film</source>
        <translation>Film beenden</translation>
    </message>
    <message>
        <source>Film</source>
        <translation>Filmen</translation>
    </message>
</context>
<context>
    <name>StageActions</name>
    <message>
        <source>Picture</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>Plays and pauses the robot&apos;s pictures</source>
        <translation>Spielt die Bilder des Roboters ab und pausiert sie</translation>
    </message>
    <message>
        <source>Freeze</source>
        <translation>Einfrieren</translation>
    </message>
    <message>
        <source>Holds this picture here; the rest goes on</source>
        <translation>Hält dieses Bild hier fest; alles andere läuft weiter</translation>
    </message>
    <message>
        <source>Another stage</source>
        <translation>Weitere Bühne</translation>
    </message>
    <message>
        <source>Opens one more view of this robot</source>
        <translation>Öffnet eine weitere Ansicht dieses Roboters</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>Vollbild</translation>
    </message>
    <message>
        <source>Fills the screen; Esc leaves it</source>
        <translation>Füllt den Bildschirm; Esc beendet es</translation>
    </message>
    <message>
        <source>Looking</source>
        <translation>Betrachten</translation>
    </message>
    <message>
        <source>Fit</source>
        <translation>Einpassen</translation>
    </message>
    <message>
        <source>Shows the whole picture, as large as there is room</source>
        <translation>Zeigt das ganze Bild, so groß wie Platz ist</translation>
    </message>
    <message>
        <source>1:1</source>
        <translation>1:1</translation>
    </message>
    <message>
        <source>One pixel of the screen for each of the picture</source>
        <translation>Ein Pixel des Bildschirms für jedes des Bildes</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Vergrößern</translation>
    </message>
    <message>
        <source>Enlarges; with the wheel around the pointer</source>
        <translation>Vergrößert; mit dem Mausrad um den Zeiger</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Verkleinern</translation>
    </message>
    <message>
        <source>Makes it smaller</source>
        <translation>Macht es kleiner</translation>
    </message>
    <message>
        <source>Turn right</source>
        <translation>Rechts drehen</translation>
    </message>
    <message>
        <source>Turns this view by a quarter, clockwise</source>
        <translation>Dreht diese Ansicht um ein Viertel im Uhrzeigersinn</translation>
    </message>
    <message>
        <source>Turn left</source>
        <translation>Links drehen</translation>
    </message>
    <message>
        <source>Turns it back by a quarter</source>
        <translation>Dreht sie um ein Viertel zurück</translation>
    </message>
    <message>
        <source>Mirror</source>
        <translation>Spiegeln</translation>
    </message>
    <message>
        <source>Swaps left and right in this view</source>
        <translation>Vertauscht in dieser Ansicht links und rechts</translation>
    </message>
    <message>
        <source>Measuring</source>
        <translation>Messen</translation>
    </message>
    <message>
        <source>Overlays</source>
        <translation>Einblendungen</translation>
    </message>
    <message>
        <source>What detectors and programs draw</source>
        <translation>Was Detektoren und Programme zeichnen</translation>
    </message>
    <message>
        <source>Sources</source>
        <translation>Quellen</translation>
    </message>
    <message>
        <source>Lists what is drawn, to hide some of it</source>
        <translation>Führt auf, was gezeichnet wird, um davon auszublenden</translation>
    </message>
    <message>
        <source>Detections on their frame</source>
        <translation>Erkanntes auf seinem Bild</translation>
    </message>
    <message>
        <source>Holds the picture back until its detections are there</source>
        <translation>Hält das Bild zurück, bis da ist, was darauf erkannt wurde</translation>
    </message>
    <message>
        <source>Grid</source>
        <translation>Raster</translation>
    </message>
    <message>
        <source>Tenths of the picture, and its pixels when large</source>
        <translation>Zehntel des Bildes, und seine Pixel, wenn sie groß sind</translation>
    </message>
    <message>
        <source>Pixel</source>
        <translation>Pixel</translation>
    </message>
    <message>
        <source>Says what the pixel under the pointer is</source>
        <translation>Sagt, was das Pixel unter dem Zeiger ist</translation>
    </message>
    <message>
        <source>Histogram</source>
        <translation>Histogramm</translation>
    </message>
    <message>
        <source>How bright the picture is</source>
        <translation>Wie hell das Bild ist</translation>
    </message>
    <message>
        <source>Status line</source>
        <translation>Statuszeile</translation>
    </message>
    <message>
        <source>Rate, age, size, encoding</source>
        <translation>Rate, Alter, Größe, Kodierung</translation>
    </message>
    <message>
        <source>Tool bar</source>
        <translation>Werkzeugleiste</translation>
    </message>
    <message>
        <source>The buttons above the picture</source>
        <translation>Die Schaltflächen über dem Bild</translation>
    </message>
    <message>
        <source>Keeping</source>
        <translation>Aufheben</translation>
    </message>
    <message>
        <source>Save picture</source>
        <translation>Bild speichern</translation>
    </message>
    <message>
        <source>Saves what is seen as PNG, without asking</source>
        <translation>Speichert, was zu sehen ist, als PNG, ohne zu fragen</translation>
    </message>
    <message>
        <source>Save without overlays</source>
        <translation>Ohne Einblendungen speichern</translation>
    </message>
    <message>
        <source>Saves the picture alone as PNG</source>
        <translation>Speichert das Bild allein als PNG</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Puts what is seen on the clipboard</source>
        <translation>Legt, was zu sehen ist, in die Zwischenablage</translation>
    </message>
    <message>
        <source>Film</source>
        <translation>Filmen</translation>
    </message>
    <message>
        <source>Films what is seen on this computer</source>
        <translation>Nimmt auf diesem Computer auf, was zu sehen ist</translation>
    </message>
    <message>
        <source>Folder...</source>
        <translation>Ordner ...</translation>
    </message>
    <message>
        <source>Where pictures and films are saved</source>
        <translation>Wo Bilder und Filme gespeichert werden</translation>
    </message>
    <message>
        <source>Files on the robot</source>
        <translation>Dateien auf dem Roboter</translation>
    </message>
    <message>
        <source>The photos and films that the robot has taken</source>
        <translation>Die Fotos und Filme, die der Roboter aufgenommen hat</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Shortcuts</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>This list</source>
        <translation>Diese Liste</translation>
    </message>
</context>
<context>
    <name>StageCanvas</name>
    <message>
        <source>Camera picture, large</source>
        <translation>Kamerabild, groß</translation>
    </message>
</context>
<context>
    <name>StageKeeper</name>
    <message>
        <source>There is no picture to save yet.</source>
        <translation>Es gibt noch kein Bild zu speichern.</translation>
    </message>
    <message>
        <source>Saved: %1</source>
        <translation>Gespeichert: %1</translation>
    </message>
    <message>
        <source>There is no picture to copy yet.</source>
        <translation>Es gibt noch kein Bild zu kopieren.</translation>
    </message>
    <message>
        <source>Copied what is seen.</source>
        <translation>Kopiert, was zu sehen ist.</translation>
    </message>
    <message>
        <source>Where pictures and films are saved</source>
        <translation>Wo Bilder und Filme gespeichert werden</translation>
    </message>
    <message>
        <source>Pictures and films are saved in %1</source>
        <translation>Bilder und Filme werden in %1 gespeichert</translation>
    </message>
    <message>
        <source>Film saved: %1</source>
        <translation>Film gespeichert: %1</translation>
    </message>
    <message>
        <source>Filming %1:%2, %3</source>
        <translation>Film läuft: %1:%2, %3</translation>
    </message>
    <message>
        <source>%1, %2 pictures missing</source>
        <translation>%1, %2 Bilder fehlen</translation>
    </message>
    <message>
        <source>%1, %2 picture missing</source>
        <translation>%1, %2 Bild fehlt</translation>
    </message>
</context>
<context>
    <name>StageLine</name>
    <message>
        <source>Frozen</source>
        <translation>Eingefroren</translation>
    </message>
    <message>
        <source>Live</source>
        <translation>Live</translation>
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
        <source>No new picture for %1</source>
        <translation>Kein neues Bild seit %1</translation>
    </message>
    <message>
        <source>Not playing</source>
        <translation>Keine Wiedergabe</translation>
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
        <source>%1 x %2</source>
        <translation>%1 x %2</translation>
    </message>
    <message>
        <source>%1 dropped</source>
        <translation>%1 verworfen</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>State of the picture</source>
        <translation>Zustand des Bildes</translation>
    </message>
</context>
<context>
    <name>StageOverlays</name>
    <message>
        <source>Balls</source>
        <translation>Bälle</translation>
    </message>
    <message>
        <source>Ducks</source>
        <translation>Enten</translation>
    </message>
    <message>
        <source>Faces</source>
        <translation>Gesichter</translation>
    </message>
    <message>
        <source>Landmarks</source>
        <translation>Landmarken</translation>
    </message>
    <message>
        <source>Logos</source>
        <translation>Logos</translation>
    </message>
    <message>
        <source>Pictures</source>
        <translation>Bilder</translation>
    </message>
    <message>
        <source>%1 s ago</source>
        <translation>vor %1 s</translation>
    </message>
    <message>
        <source>%1 min ago</source>
        <translation>vor %1 min</translation>
    </message>
</context>
<context>
    <name>VideoRecorderSettingsWidget</name>
    <message>
        <source>Video name</source>
        <translation>Name des Videos</translation>
    </message>
    <message>
        <source>Recording status</source>
        <translation>Zustand der Aufnahme</translation>
    </message>
</context>
<context>
    <name>VideoSettingsWidget</name>
    <message>
        <source>The robot did not offer this when the panel was opened.</source>
        <translation>Als dieses Feld geöffnet wurde, hat der Roboter dies nicht angeboten.</translation>
    </message>
    <message>
        <source>the robot is gone</source>
        <translation>der Roboter ist fort</translation>
    </message>
    <message>
        <source>there is no setting &apos;%1&apos;; there are: size, fps, detect and camera</source>
        <translation>es gibt keine Einstellung „%1“; es gibt: size, fps, detect und camera</translation>
    </message>
    <message>
        <source>this camera has no size &apos;%1&apos;; it has: %2</source>
        <translation>diese Kamera hat keine Größe „%1“; sie hat: %2</translation>
    </message>
    <message>
        <source>this panel has no frame rate to set</source>
        <translation>dieses Feld hat keine Bildrate einzustellen</translation>
    </message>
    <message>
        <source>the frame rate &apos;%1&apos; is no whole number from 1 to %2, which is the most at this size</source>
        <translation>die Bildrate „%1“ ist keine ganze Zahl von 1 bis %2, dem Höchsten bei dieser Größe</translation>
    </message>
    <message>
        <source>there is no detection &apos;%1&apos;; there are: %2</source>
        <translation>es gibt keine Erkennung „%1“; es gibt: %2</translation>
    </message>
    <message>
        <source>there is no camera &apos;%1&apos;; there are: 0 and 1</source>
        <translation>es gibt keine Kamera „%1“; es gibt: 0 und 1</translation>
    </message>
    <message>
        <source>which camera is active is not known</source>
        <translation>es ist nicht bekannt, welche Kamera aktiv ist</translation>
    </message>
</context>
<context>
    <name>ViewImage</name>
    <message>
        <source>Camera picture</source>
        <translation>Kamerabild</translation>
    </message>
    <message>
        <source>&gt; Press start &lt;</source>
        <translation>&gt; Start drücken &lt;</translation>
    </message>
</context>
<context>
    <name>Widget</name>
    <message>
        <source>the camera thread</source>
        <translation>den Thread der Kamera</translation>
    </message>
    <message>
        <source>Periscope.toggleVideoRecord: Invalid video name.</source>
        <translation>Dieser Name eines Videos ist nicht erlaubt: nur Buchstaben, Ziffern und Unterstriche, vorn keine Ziffer.</translation>
    </message>
    <message>
        <source>Still recording %1: %2 frame up to now</source>
        <translation>%1 wird noch aufgenommen: bisher %2 Bild</translation>
    </message>
    <message>
        <source>Still recording %1: %2 frames up to now</source>
        <translation>%1 wird noch aufgenommen: bisher %2 Bilder</translation>
    </message>
    <message>
        <source>No photo was taken: %1</source>
        <translation>Es wurde kein Foto aufgenommen: %1</translation>
    </message>
    <message>
        <source>The photo is on the robot.</source>
        <translation>Das Foto ist auf dem Roboter.</translation>
    </message>
    <message>
        <source>Photo on the robot: %1</source>
        <translation>Foto auf dem Roboter: %1</translation>
    </message>
    <message>
        <source>Upload video on your computer</source>
        <translation>Video auf diesem Computer speichern</translation>
    </message>
    <message>
        <source>Videos (*.avi)</source>
        <translation>Videos (*.avi)</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Failed to upload file.</source>
        <translation>Die Datei konnte nicht heruntergeladen werden.</translation>
    </message>
</context>
</TS>
