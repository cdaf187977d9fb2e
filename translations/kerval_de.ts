<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>AboutDialog</name>
    <message>
        <source>Kerval Font Manager</source>
        <translation>Kerval Schriftverwaltung</translation>
    </message>
    <message>
        <source>Version: %1</source>
        <translation>Version: %1</translation>
    </message>
    <message>
        <source>Date: %2</source>
        <translation>Datum: %2</translation>
    </message>
</context>
<context>
    <name>AbstractPreferencesWindow</name>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
</context>
<context>
    <name>ActiveFontSwitchWidget</name>
    <message>
        <source>Deactivate</source>
        <translation>Deaktivieren</translation>
    </message>
    <message>
        <source>Activate</source>
        <translation>Aktivieren</translation>
    </message>
    <message>
        <source>Deactivated</source>
        <translation>Deaktiviert</translation>
    </message>
    <message>
        <source>Activated</source>
        <translation>Aktiviert</translation>
    </message>
    <message>
        <source>A system font stays as it is</source>
        <translation>Eine Systemschrift bleibt, wie sie ist</translation>
    </message>
    <message>
        <source>Another font of this name is active</source>
        <translation>Eine andere Schrift dieses Namens ist aktiv</translation>
    </message>
    <message>
        <source>The system refused</source>
        <translation>Das System hat abgelehnt</translation>
    </message>
</context>
<context>
    <name>ActiveFontsGroup</name>
    <message>
        <source>Active Fonts</source>
        <translation>Aktive Schriften</translation>
    </message>
</context>
<context>
    <name>AllFontsGroup</name>
    <message>
        <source>All Fonts</source>
        <translation>Alle Schriften</translation>
    </message>
</context>
<context>
    <name>CharacterMapWidget</name>
    <message>
        <source>Copy Character</source>
        <translation>Zeichen kopieren</translation>
    </message>
    <message>
        <source>Copy Code</source>
        <translation>Code kopieren</translation>
    </message>
</context>
<context>
    <name>DuplicateFontsGroup</name>
    <message>
        <source>Duplicated Fonts</source>
        <translation>Doppelte Schriften</translation>
    </message>
</context>
<context>
    <name>ExistingFontsGroup</name>
    <message>
        <source>Existing Fonts</source>
        <translation>Vorhandene Schriften</translation>
    </message>
</context>
<context>
    <name>FMSControlCenter</name>
    <message>
        <source>Scanner Warnings</source>
        <comment>Title of window that displays scan-related warnings</comment>
        <translation>Warnungen der Suche</translation>
    </message>
    <message>
        <source>Kerval Control Center</source>
        <comment>Title of Control Center window</comment>
        <translation>Kerval Kontrollzentrum</translation>
    </message>
    <message>
        <source>The file with your groups, notes and rankings cannot be opened. Until Kerval is started again they are not shown and cannot be changed.
Please check permissions on:
   &quot;%1&quot;</source>
        <translation>Die Datei mit Ihren Gruppen, Notizen und Bewertungen lässt sich nicht öffnen. Bis zum nächsten Start von Kerval werden sie nicht gezeigt und können nicht geändert werden.
Bitte prüfen Sie die Zugriffsrechte von:
   &quot;%1&quot;</translation>
    </message>
    <message>
        <source>The file with your groups, notes and rankings was damaged.
It was kept as &quot;%1&quot;, and Kerval started with what could still be read of it.</source>
        <translation>Die Datei mit Ihren Gruppen, Notizen und Bewertungen war beschädigt.
Sie wurde als &quot;%1&quot; aufgehoben, und Kerval hat mit dem begonnen, was von ihr noch zu lesen war.</translation>
    </message>
    <message>
        <source>Administrator</source>
        <comment>On Windows this text is prepended to control center&apos;s title if program is started under Admin privileges</comment>
        <translation>Administrator</translation>
    </message>
    <message>
        <source>Font Scanner</source>
        <translation>Schriftsuche</translation>
    </message>
    <message>
        <source>Scan</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Pause</source>
        <comment>button title</comment>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>Abort</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Stop Scanning</source>
        <translation>Suche beenden</translation>
    </message>
    <message>
        <source>Database font count</source>
        <comment>Example - Database font count: 126</comment>
        <translation>Schriften in der Datenbank</translation>
    </message>
    <message>
        <source>Resume</source>
        <comment>button title</comment>
        <translation>Fortsetzen</translation>
    </message>
    <message>
        <source>Pausing scan...</source>
        <comment>Scanner is paused processing fonts</comment>
        <translation>Suche wird angehalten...</translation>
    </message>
    <message>
        <source>Finishing scan...</source>
        <comment>Scanner is finishing processing fonts</comment>
        <translation>Suche wird beendet...</translation>
    </message>
    <message>
        <source>Processed fonts</source>
        <comment>Example - Processed fonts: 10 of 20</comment>
        <translation>Verarbeitete Schriften</translation>
    </message>
    <message>
        <source>: %1 of %2</source>
        <comment>Example - Processed fonts: 10 of 20</comment>
        <translation>: %1 von %2</translation>
    </message>
    <message>
        <source>paused</source>
        <comment>Appended to progress text when scan is paused</comment>
        <translation>angehalten</translation>
    </message>
    <message>
        <source>scanning</source>
        <comment>Appended to progress text when scanner is scanning system for new fonts</comment>
        <translation>Suche läuft</translation>
    </message>
    <message>
        <source>1 warning</source>
        <translation>1 Warnung</translation>
    </message>
    <message numerus="yes">
        <source>%n warnings</source>
        <comment>Not for one warning</comment>
        <translation>
            <numerusform>%n Warnung</numerusform>
            <numerusform>%n Warnungen</numerusform>
        </translation>
    </message>
    <message>
        <source>Following files are not processed:</source>
        <translation>Diese Dateien wurden nicht verarbeitet:</translation>
    </message>
    <message>
        <source>Reason</source>
        <translation>Grund</translation>
    </message>
</context>
<context>
    <name>FMSLog</name>
    <message>
        <source>Scan started</source>
        <translation>Suche begonnen</translation>
    </message>
    <message>
        <source>Scan finished</source>
        <translation>Suche beendet</translation>
    </message>
    <message>
        <source>Scan aborted</source>
        <translation>Suche abgebrochen</translation>
    </message>
    <message>
        <source>Scan paused</source>
        <translation>Suche angehalten</translation>
    </message>
    <message>
        <source>Scan resumed</source>
        <translation>Suche fortgesetzt</translation>
    </message>
    <message>
        <source>Font processed</source>
        <translation>Schrift verarbeitet</translation>
    </message>
    <message>
        <source>Font error</source>
        <translation>Fehler in einer Schrift</translation>
    </message>
    <message>
        <source>Service started</source>
        <translation>Dienst gestartet</translation>
    </message>
    <message>
        <source>Service stopped</source>
        <translation>Dienst beendet</translation>
    </message>
    <message>
        <source>License obtained</source>
        <translation>Lizenz erhalten</translation>
    </message>
    <message>
        <source>License revoked</source>
        <translation>Lizenz entzogen</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Meldung</translation>
    </message>
    <message>
        <source>Font removed</source>
        <translation>Schrift entfernt</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Unbekannt</translation>
    </message>
</context>
<context>
    <name>FMSLogModel</name>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Art</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Beschreibung</translation>
    </message>
</context>
<context>
    <name>FMSLogViewer</name>
    <message>
        <source>Kerval Log</source>
        <translation>Kerval Protokoll</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Messages</source>
        <translation>Meldungen</translation>
    </message>
    <message>
        <source>What the service has said since it was started</source>
        <translation>Was der Dienst seit seinem Start gemeldet hat</translation>
    </message>
</context>
<context>
    <name>FMSPlainTextMessage</name>
    <message>
        <source>Form</source>
        <translation>Formular</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Messages</source>
        <translation>Meldungen</translation>
    </message>
</context>
<context>
    <name>FMSScanPathSettings</name>
    <message>
        <source>Creation date</source>
        <translation>Erstellungsdatum</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Number of fonts</source>
        <translation>Anzahl der Schriften</translation>
    </message>
    <message>
        <source>Ascending</source>
        <translation>Aufsteigend</translation>
    </message>
    <message>
        <source>Descending</source>
        <translation>Absteigend</translation>
    </message>
    <message>
        <source>Form</source>
        <translation>Formular</translation>
    </message>
    <message>
        <source>Custom scan paths</source>
        <translation>Eigene Suchordner</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Bearbeiten</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Sort by:</source>
        <translation>Sortieren nach:</translation>
    </message>
    <message>
        <source>Order:</source>
        <translation>Reihenfolge:</translation>
    </message>
    <message>
        <source>Font group sorting</source>
        <translation>Sortierung der Schriftgruppen</translation>
    </message>
</context>
<context>
    <name>FMSTrayIcon</name>
    <message>
        <source>Font Manager</source>
        <translation>Schriftverwaltung</translation>
    </message>
    <message>
        <source>&amp;Control Center</source>
        <translation>&amp;Kontrollzentrum</translation>
    </message>
    <message>
        <source>&amp;Log</source>
        <translation>&amp;Protokoll</translation>
    </message>
    <message>
        <source>&amp;Preferences</source>
        <translation>&amp;Einstellungen</translation>
    </message>
    <message>
        <source>&amp;Check for Updates</source>
        <translation>Nach &amp;Aktualisierungen suchen</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
</context>
<context>
    <name>FMService</name>
    <message>
        <source>Can&apos;t obtain path to the home folder.
Exiting...</source>
        <translation>Der Pfad des persönlichen Ordners lässt sich nicht ermitteln.
Kerval wird beendet...</translation>
    </message>
    <message>
        <source>Please check permissions on:
   &quot;%1&quot;</source>
        <translation>Bitte prüfen Sie die Zugriffsrechte von:
   &quot;%1&quot;</translation>
    </message>
    <message>
        <source>Can&apos;t write to settings folder.
Exiting...</source>
        <translation>In den Ordner der Einstellungen kann nicht geschrieben werden.
Kerval wird beendet...</translation>
    </message>
    <message>
        <source>Service is ready</source>
        <translation>Der Dienst ist bereit</translation>
    </message>
    <message>
        <source>The file with your groups, notes and rankings could not be read.
It was kept as &quot;%1&quot;, and Kerval started with a new one.</source>
        <translation>Die Datei mit Ihren Gruppen, Notizen und Bewertungen war nicht lesbar.
Sie wurde als &quot;%1&quot; aufgehoben, und Kerval hat mit einer neuen begonnen.</translation>
    </message>
    <message>
        <source>Administrator</source>
        <comment>On Windows indicates that service is running under admin privileges</comment>
        <translation>Administrator</translation>
    </message>
    <message>
        <source>Service is initializing...</source>
        <translation>Der Dienst wird gestartet...</translation>
    </message>
    <message>
        <source>Kerval Log</source>
        <comment>Window title</comment>
        <translation>Kerval Protokoll</translation>
    </message>
    <message>
        <source>Scan finished...</source>
        <translation>Suche beendet...</translation>
    </message>
    <message>
        <source>The file of the font library could not be read.
It was kept as &quot;%1&quot;. Its fonts come back with the next scan.</source>
        <translation>Die Datei der Schriftbibliothek war nicht lesbar.
Sie wurde als &quot;%1&quot; aufbewahrt. Ihre Schriften kommen mit der nächsten Suche zurück.</translation>
    </message>
    <message>
        <source>The file of the font library was made by another version.
It was kept as &quot;%1&quot;. Its fonts come back with the next scan.</source>
        <translation>Die Datei der Schriftbibliothek stammt von einer anderen Version.
Sie wurde als &quot;%1&quot; aufbewahrt. Ihre Schriften kommen mit der nächsten Suche zurück.</translation>
    </message>
    <message>
        <source>The file of the font library cannot be opened.
Please check permissions on:
   &quot;%1&quot;</source>
        <translation>Die Datei der Schriftbibliothek lässt sich nicht öffnen.
Bitte prüfen Sie die Zugriffsrechte von:
   &quot;%1&quot;</translation>
    </message>
</context>
<context>
    <name>FileProgressDialog</name>
    <message>
        <source>Saved as %1</source>
        <translation>Gespeichert als %1</translation>
    </message>
    <message>
        <source>Show in Windows Explorer</source>
        <translation>Im Dateimanager anzeigen</translation>
    </message>
</context>
<context>
    <name>FilterButtonsWidget</name>
    <message>
        <source>Form</source>
        <translation>Formular</translation>
    </message>
    <message>
        <source>Attributes</source>
        <translation>Merkmale</translation>
    </message>
    <message>
        <source>Filters</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Reset Filters</source>
        <translation>Filter zurücksetzen</translation>
    </message>
</context>
<context>
    <name>FontActivationDialog</name>
    <message numerus="yes">
        <source>Activating %n font(s)</source>
        <translation>
            <numerusform>%n Schrift wird aktiviert</numerusform>
            <numerusform>%n Schriften werden aktiviert</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Deactivating %n font(s)</source>
        <translation>
            <numerusform>%n Schrift wird deaktiviert</numerusform>
            <numerusform>%n Schriften werden deaktiviert</numerusform>
        </translation>
    </message>
    <message>
        <source>Action</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>Font</source>
        <translation>Schrift</translation>
    </message>
    <message>
        <source>Filename</source>
        <translation>Dateiname</translation>
    </message>
    <message>
        <source>Conflicting Font Filename</source>
        <translation>Dateiname der Schrift im Konflikt</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Activity of system fonts can&apos;t be changed</source>
        <translation>Systemschriften lassen sich nicht umschalten</translation>
    </message>
    <message>
        <source>Unsupported font on this operating system</source>
        <translation>Dieses Betriebssystem unterstützt die Schrift nicht</translation>
    </message>
    <message>
        <source>General activation faliure</source>
        <translation>Allgemeiner Fehler beim Aktivieren</translation>
    </message>
    <message>
        <source>Some fonts could not be activated.</source>
        <translation>Einige Schriften konnten nicht aktiviert werden.</translation>
    </message>
    <message>
        <source>Some fonts could not be deactivated.</source>
        <translation>Einige Schriften konnten nicht deaktiviert werden.</translation>
    </message>
    <message>
        <source>The following fonts have the name of a font that is active already:</source>
        <translation>Diese Schriften heißen wie eine Schrift, die bereits aktiv ist:</translation>
    </message>
    <message>
        <source>Failed to activate the following fonts:</source>
        <translation>Diese Schriften konnten nicht aktiviert werden:</translation>
    </message>
    <message>
        <source>Failed to deactivate the following fonts:</source>
        <translation>Diese Schriften konnten nicht deaktiviert werden:</translation>
    </message>
    <message>
        <source>Not activated</source>
        <translation>Nicht aktiviert</translation>
    </message>
    <message>
        <source>1 font activated</source>
        <translation>1 Schrift aktiviert</translation>
    </message>
    <message numerus="yes">
        <source>%n fonts activated</source>
        <comment>Not for one font</comment>
        <translation>
            <numerusform>%n Schrift aktiviert</numerusform>
            <numerusform>%n Schriften aktiviert</numerusform>
        </translation>
    </message>
    <message>
        <source>1 font deactivated</source>
        <translation>1 Schrift deaktiviert</translation>
    </message>
    <message numerus="yes">
        <source>%n fonts deactivated</source>
        <comment>Not for one font</comment>
        <translation>
            <numerusform>%n Schrift deaktiviert</numerusform>
            <numerusform>%n Schriften deaktiviert</numerusform>
        </translation>
    </message>
    <message>
        <source>Programs that are already running may need a restart to notice.</source>
        <translation>Programme, die schon laufen, bemerken es eventuell erst nach ihrem Neustart.</translation>
    </message>
    <message>
        <source>Activating %1</source>
        <translation>%1 wird aktiviert</translation>
    </message>
    <message>
        <source>Deactivating %1</source>
        <translation>%1 wird deaktiviert</translation>
    </message>
</context>
<context>
    <name>FontAdder</name>
    <message>
        <source>Broken name table</source>
        <translation>Fehlerhafte Namenstabelle</translation>
    </message>
    <message>
        <source>Empty PostScript name</source>
        <translation>Leerer PostScript-Name</translation>
    </message>
    <message>
        <source>Font name start with &apos;.&apos;, it should remain hidden</source>
        <translation>Der Schriftname beginnt mit &apos;.&apos;, sie soll verborgen bleiben</translation>
    </message>
    <message>
        <source>Failed to process the file</source>
        <translation>Die Datei konnte nicht verarbeitet werden</translation>
    </message>
</context>
<context>
    <name>FontAdderDialog</name>
    <message>
        <source>Scanner Warnings</source>
        <translation>Warnungen der Suche</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Warnings</source>
        <translation>Warnungen</translation>
    </message>
    <message>
        <source>Stop Scanning</source>
        <translation>Suche beenden</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Abort</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>Fortsetzen</translation>
    </message>
    <message>
        <source>Number of fonts in Library</source>
        <translation>Anzahl der Schriften in der Bibliothek</translation>
    </message>
</context>
<context>
    <name>FontAdderStatusWidget</name>
    <message>
        <source>Form</source>
        <translation>Formular</translation>
    </message>
    <message>
        <source>Font Scanner paused</source>
        <translation>Schriftsuche angehalten</translation>
    </message>
    <message>
        <source>Font Scanner</source>
        <translation>Schriftsuche</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>Fortsetzen</translation>
    </message>
    <message>
        <source>Abort</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Anhalten</translation>
    </message>
</context>
<context>
    <name>FontArchiveImportDialog</name>
    <message>
        <source>Unpacking archives...</source>
        <translation>Archive werden entpackt...</translation>
    </message>
    <message>
        <source>Unpacking &quot;%1&quot;...</source>
        <translation>&quot;%1&quot; wird entpackt...</translation>
    </message>
    <message>
        <source>Cancelling...</source>
        <translation>Wird abgebrochen...</translation>
    </message>
    <message>
        <source>It is no zip archive, or it is damaged.</source>
        <translation>Es ist kein ZIP-Archiv oder es ist beschädigt.</translation>
    </message>
    <message>
        <source>It would write outside its own folder, or one of its files over another.</source>
        <translation>Es würde außerhalb seines Ordners schreiben oder eine seiner Dateien über eine andere.</translation>
    </message>
    <message>
        <source>It is protected by a password.</source>
        <translation>Es ist durch ein Passwort geschützt.</translation>
    </message>
    <message>
        <source>Its content is damaged.</source>
        <translation>Sein Inhalt ist beschädigt.</translation>
    </message>
    <message>
        <source>It would unpack to more than fonts ever do.</source>
        <translation>Es würde zu mehr entpackt, als Schriften je ergeben.</translation>
    </message>
    <message>
        <source>There is not enough room on the disk.</source>
        <translation>Auf dem Datenträger ist nicht genug Platz.</translation>
    </message>
    <message>
        <source>Its files could not be written.</source>
        <translation>Seine Dateien konnten nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>It holds no fonts.</source>
        <translation>Es enthält keine Schriften.</translation>
    </message>
</context>
<context>
    <name>FontExportProgressDialog</name>
    <message>
        <source>The archive &quot;%1&quot; could not be written.</source>
        <translation>Das Archiv &quot;%1&quot; konnte nicht geschrieben werden.</translation>
    </message>
</context>
<context>
    <name>FontLensBusyIndicator</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>FontLensDialog</name>
    <message>
        <source>FontLens - Open Image</source>
        <translation>FontLens - Bild öffnen</translation>
    </message>
    <message>
        <source>Images (*.png *.jpg *.jpeg *.bmp)</source>
        <translation>Bilder (*.png *.jpg *.jpeg *.bmp)</translation>
    </message>
    <message>
        <source>FontLens - Open Image From URL</source>
        <translation>FontLens - Bild von Adresse öffnen</translation>
    </message>
    <message>
        <source>Image URL</source>
        <translation>Adresse des Bildes</translation>
    </message>
    <message>
        <source>Please enter a valid image URL!</source>
        <translation>Bitte eine gültige Adresse eines Bildes eingeben!</translation>
    </message>
    <message>
        <source>FontLens - Open Image From File</source>
        <translation>FontLens - Bild aus Datei öffnen</translation>
    </message>
    <message>
        <source>Please open a valid image file!</source>
        <translation>Bitte eine gültige Bilddatei öffnen!</translation>
    </message>
    <message>
        <source>Opening the picture...</source>
        <translation>Bild wird geöffnet...</translation>
    </message>
    <message>
        <source>Downloading the picture...</source>
        <translation>Bild wird heruntergeladen...</translation>
    </message>
    <message>
        <source>Failed to open the supplied image.
Please make sure that the image file or URL is valid!</source>
        <translation>Das Bild konnte nicht geöffnet werden.
Bitte prüfen, ob die Bilddatei oder die Adresse gültig ist!</translation>
    </message>
    <message>
        <source>FontLens</source>
        <translation>FontLens</translation>
    </message>
    <message>
        <source>Failed to connect to the Kerval server.
Please make sure you have a working Internet connection and/or try again later!</source>
        <translation>Der Kerval-Server ist nicht erreichbar.
Bitte die Internetverbindung prüfen oder es später noch einmal versuchen!</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Kerval FontLens helps you identify fonts on images.
Usage:
1. Open an image
2. Click a letter to add it to the identification list
3. Repeat for several individual letters
4. Fill in letter boxes
5. Click on the Identify button
tip: Shift+Click to build a letter i j</source>
        <translation>Kerval FontLens hilft, Schriften auf Bildern zu erkennen.
So geht es:
1. Ein Bild öffnen
2. Einen Buchstaben anklicken, um ihn in die Liste aufzunehmen
3. Für mehrere einzelne Buchstaben wiederholen
4. In die Felder eintragen, welche Buchstaben es sind
5. Auf „Erkennen“ klicken
Tipp: Umschalt+Klick setzt einen Buchstaben wie i oder j zusammen</translation>
    </message>
    <message>
        <source>Cutting out the letter...</source>
        <translation>Buchstabe wird ausgeschnitten...</translation>
    </message>
    <message>
        <source>Failed to select the letter.</source>
        <translation>Der Buchstabe konnte nicht ausgewählt werden.</translation>
    </message>
    <message>
        <source>Failed to extend the letter selection.</source>
        <translation>Der Buchstabe konnte nicht ergänzt werden.</translation>
    </message>
    <message>
        <source>Please open an image first!</source>
        <translation>Bitte zuerst ein Bild öffnen!</translation>
    </message>
    <message>
        <source>Please select some letters on the image first by clicking on them!</source>
        <translation>Bitte zuerst einige Buchstaben im Bild anklicken!</translation>
    </message>
    <message>
        <source>Please enter a character for all the selected letters on the image or remove the ones you don&apos;t want to use for font identification!</source>
        <translation>Bitte zu jedem ausgewählten Buchstaben das Zeichen eingeben oder die entfernen, die nicht verwendet werden sollen!</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <source>Looking for fonts like these letters...</source>
        <translation>Schriften mit solchen Buchstaben werden gesucht...</translation>
    </message>
    <message>
        <source>Failed to identify the font based on the selected letters.</source>
        <translation>Anhand der ausgewählten Buchstaben konnte die Schrift nicht erkannt werden.</translation>
    </message>
    <message>
        <source>Failed to tetrieve preview! Please make sure you have a working Internet connection!</source>
        <translation>Die Vorschau konnte nicht geladen werden! Bitte die Internetverbindung prüfen!</translation>
    </message>
    <message>
        <source>Dialog</source>
        <translation>Dialog</translation>
    </message>
    <message>
        <source>Open Image</source>
        <translation>Bild öffnen</translation>
    </message>
    <message>
        <source>Open Image From URL</source>
        <translation>Bild von Adresse öffnen</translation>
    </message>
    <message>
        <source>Select Letter</source>
        <translation>Buchstaben wählen</translation>
    </message>
    <message>
        <source>Pan Image</source>
        <translation>Bild verschieben</translation>
    </message>
    <message>
        <source>Split Letters</source>
        <translation>Buchstaben trennen</translation>
    </message>
    <message>
        <source>Remove Splitters</source>
        <translation>Trennlinien entfernen</translation>
    </message>
    <message>
        <source>Click a letter; Shift+Click adds a part to the last one</source>
        <translation>Einen Buchstaben anklicken; Umschalt+Klick fügt dem letzten einen Teil hinzu</translation>
    </message>
    <message>
        <source>Click along the cut between two letters; a right click ends it</source>
        <translation>Entlang des Schnitts zwischen zwei Buchstaben klicken; ein Rechtsklick beendet ihn</translation>
    </message>
    <message>
        <source>Low</source>
        <translation>Niedrig</translation>
    </message>
    <message>
        <source>Normal</source>
        <translation>Normal</translation>
    </message>
    <message>
        <source>High</source>
        <translation>Hoch</translation>
    </message>
    <message>
        <source>How faint a stroke may be and still belong to its letter</source>
        <translation>Wie schwach ein Strich sein darf, um noch zum Buchstaben zu gehören</translation>
    </message>
    <message>
        <source>Turn the picture until its letters stand upright; the grid helps</source>
        <translation>Das Bild drehen, bis die Buchstaben gerade stehen; das Raster hilft dabei</translation>
    </message>
    <message>
        <source>Display Grid</source>
        <translation>Raster anzeigen</translation>
    </message>
    <message>
        <source>Selection sensitivity:</source>
        <translation>Empfindlichkeit:</translation>
    </message>
    <message>
        <source>Rotation:</source>
        <translation>Drehung:</translation>
    </message>
    <message>
        <source>Zoom:</source>
        <translation>Zoom:</translation>
    </message>
    <message>
        <source>Picture</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>Click the letters whose font you look for</source>
        <translation>Die Buchstaben anklicken, deren Schrift gesucht wird</translation>
    </message>
    <message>
        <source>Identify</source>
        <translation>Erkennen</translation>
    </message>
    <message>
        <source>Look for the fonts of the selected letters (Enter)</source>
        <translation>Nach den Schriften der ausgewählten Buchstaben suchen (Eingabe)</translation>
    </message>
    <message>
        <source>Selected letters</source>
        <translation>Ausgewählte Buchstaben</translation>
    </message>
    <message>
        <source>Fonts found</source>
        <translation>Gefundene Schriften</translation>
    </message>
    <message>
        <source>No font looks like the selected letters.</source>
        <translation>Keine Schrift sieht aus wie die ausgewählten Buchstaben.</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Back to the picture (Alt+Left)</source>
        <translation>Zurück zum Bild (Alt+Links)</translation>
    </message>
    <message>
        <source>Show in Library</source>
        <translation>In der Bibliothek zeigen</translation>
    </message>
    <message>
        <source>Select the font in the list of fonts</source>
        <translation>Die Schrift in der Schriftenliste auswählen</translation>
    </message>
</context>
<context>
    <name>FontLensDropHint</name>
    <message>
        <source>Drop a picture with letters here</source>
        <translation>Ein Bild mit Buchstaben hier ablegen</translation>
    </message>
    <message>
        <source>or paste one with %1, or open a file or a web address</source>
        <translation>oder mit %1 einfügen, oder eine Datei oder Adresse öffnen</translation>
    </message>
</context>
<context>
    <name>FontLensFontPreviewWidget</name>
    <message>
        <source>Sample text</source>
        <translation>Beispieltext</translation>
    </message>
    <message>
        <source>Smaller preview</source>
        <translation>Vorschau verkleinern</translation>
    </message>
    <message>
        <source>Larger preview</source>
        <translation>Vorschau vergrößern</translation>
    </message>
    <message>
        <source>Preview of the font</source>
        <translation>Vorschau der Schrift</translation>
    </message>
    <message>
        <source>Buy %1 %2</source>
        <translation>%1 %2 kaufen</translation>
    </message>
    <message>
        <source>%1px</source>
        <translation>%1px</translation>
    </message>
</context>
<context>
    <name>FontLensSimilarFontsModel</name>
    <message>
        <source>%1 %2</source>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Style</source>
        <translation>Schnitt</translation>
    </message>
    <message>
        <source>Foundry</source>
        <translation>Schriftgießerei</translation>
    </message>
</context>
<context>
    <name>FontListHeaderWidget</name>
    <message>
        <source>%1 of %2 fonts</source>
        <translation>%1 von %2 Schriften</translation>
    </message>
    <message>
        <source>%1, %2 selected</source>
        <comment>How many fonts there are, and how many of them are selected</comment>
        <translation>%1, %2 ausgewählt</translation>
    </message>
    <message>
        <source>1 font</source>
        <translation>1 Schrift</translation>
    </message>
    <message numerus="yes">
        <source>%n fonts</source>
        <comment>Not for one font</comment>
        <translation>
            <numerusform>%n Schrift</numerusform>
            <numerusform>%n Schriften</numerusform>
        </translation>
    </message>
    <message>
        <source>Form</source>
        <translation>Formular</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Vorwärts</translation>
    </message>
</context>
<context>
    <name>FontManagerStrategyWindows</name>
    <message>
        <source>Inactive: the file is gone.</source>
        <translation>Inaktiv: Die Datei gibt es nicht mehr.</translation>
    </message>
    <message>
        <source>Active until this session ends.</source>
        <translation>Aktiv bis zum Ende dieser Sitzung.</translation>
    </message>
    <message>
        <source>Active: registered with the system.</source>
        <translation>Aktiv: im System eingetragen.</translation>
    </message>
    <message>
        <source>Inactive: not registered with the system.</source>
        <translation>Inaktiv: nicht im System eingetragen.</translation>
    </message>
</context>
<context>
    <name>FontconfigExplainer</name>
    <message>
        <source>Active: switched on here.</source>
        <translation>Aktiv: hier eingeschaltet.</translation>
    </message>
    <message>
        <source>Active until this session ends. Sandboxed programs do not see it.</source>
        <translation>Aktiv bis zum Ende dieser Sitzung. Abgeschottete Programme sehen sie nicht.</translation>
    </message>
    <message>
        <source>Active: installed with the system.</source>
        <translation>Aktiv: mit dem System installiert.</translation>
    </message>
    <message>
        <source>Active: installed in a folder of yours.</source>
        <translation>Aktiv: in einem Ihrer Ordner installiert.</translation>
    </message>
    <message>
        <source>Active, but programs get another file of the same name: %1</source>
        <translation>Aktiv, aber Programme bekommen eine andere Datei gleichen Namens: %1</translation>
    </message>
    <message>
        <source>Active, but a rule of another tool answers its name with another family.</source>
        <translation>Aktiv, aber eine Regel eines anderen Werkzeugs gibt für den Namen eine andere Familie aus.</translation>
    </message>
    <message>
        <source>Active, but a rule in %1 answers its name with another family.</source>
        <translation>Aktiv, aber eine Regel in %1 gibt für den Namen eine andere Familie aus.</translation>
    </message>
    <message>
        <source>Inactive: in no folder that programs look into.</source>
        <translation>Inaktiv: in keinem Ordner, in dem Programme suchen.</translation>
    </message>
    <message>
        <source>Inactive: switched off here.</source>
        <translation>Inaktiv: hier ausgeschaltet.</translation>
    </message>
    <message>
        <source>Inactive: hidden by a rule in %1</source>
        <translation>Inaktiv: durch eine Regel in %1 verborgen</translation>
    </message>
    <message>
        <source>Inactive: the system cannot read this file as a font.</source>
        <translation>Inaktiv: Das System kann diese Datei nicht als Schrift lesen.</translation>
    </message>
    <message>
        <source>Inactive: the file is gone.</source>
        <translation>Inaktiv: Die Datei gibt es nicht mehr.</translation>
    </message>
    <message>
        <source>Inactive: this configuration file is broken: %1</source>
        <translation>Inaktiv: Diese Konfigurationsdatei ist fehlerhaft: %1</translation>
    </message>
</context>
<context>
    <name>GroupSelectionDialog</name>
    <message>
        <source>Groups</source>
        <translation>Gruppen</translation>
    </message>
    <message>
        <source>There are no groups yet. &quot;New Group&quot; and &quot;New Group With Fonts&quot; make them.</source>
        <translation>Es gibt noch keine Gruppen. „Neue Gruppe“ und „Neue Gruppe mit Schriften“ legen welche an.</translation>
    </message>
</context>
<context>
    <name>HiddenFontsGroup</name>
    <message>
        <source>Hidden Fonts</source>
        <translation>Ausgeblendete Schriften</translation>
    </message>
</context>
<context>
    <name>InactiveFontsGroup</name>
    <message>
        <source>Inactive Fonts</source>
        <translation>Inaktive Schriften</translation>
    </message>
</context>
<context>
    <name>KrvAttributesWidget</name>
    <message>
        <source>Weight</source>
        <translation>Strichstärke</translation>
    </message>
    <message>
        <source>Width</source>
        <translation>Breite</translation>
    </message>
    <message>
        <source>Italic angle</source>
        <translation>Kursivwinkel</translation>
    </message>
    <message>
        <source>Italic</source>
        <translation>Kursiv</translation>
    </message>
    <message>
        <source>Optical size</source>
        <translation>Optische Größe</translation>
    </message>
    <message>
        <source>Optical</source>
        <translation>Optisch</translation>
    </message>
    <message>
        <source>From light to heavy</source>
        <translation>Von leicht bis fett</translation>
    </message>
    <message>
        <source>From narrow to wide</source>
        <translation>Von schmal bis breit</translation>
    </message>
    <message>
        <source>From upright to slanted</source>
        <translation>Von gerade bis geneigt</translation>
    </message>
    <message>
        <source>From small letters to large ones</source>
        <translation>Von kleinen zu großen Buchstaben</translation>
    </message>
</context>
<context>
    <name>KrvCharacterMapWidget</name>
    <message>
        <source>Characters:</source>
        <translation>Zeichen:</translation>
    </message>
    <message>
        <source>Character range</source>
        <translation>Zeichenbereich</translation>
    </message>
    <message>
        <source>Size:</source>
        <translation>Größe:</translation>
    </message>
    <message>
        <source>Character size in pixels</source>
        <translation>Zeichengröße in Pixeln</translation>
    </message>
    <message>
        <source>Character Map</source>
        <translation>Zeichentabelle</translation>
    </message>
    <message>
        <source>All Characters</source>
        <translation>Alle Zeichen</translation>
    </message>
</context>
<context>
    <name>KrvFiltersWidget</name>
    <message>
        <source>Form</source>
        <translation>Formular</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>OpenType</source>
        <translation>OpenType</translation>
    </message>
    <message>
        <source>TrueType</source>
        <translation>TrueType</translation>
    </message>
    <message>
        <source>Type1</source>
        <translation>Type1</translation>
    </message>
    <message>
        <source>Serif</source>
        <translation>Serifen</translation>
    </message>
    <message>
        <source>Sans Serif</source>
        <translation>Serifenlos</translation>
    </message>
    <message>
        <source>Symbol</source>
        <translation>Symbole</translation>
    </message>
    <message>
        <source>Non Symbol</source>
        <translation>Keine Symbole</translation>
    </message>
    <message>
        <source>Mono</source>
        <translation>Feste Breite</translation>
    </message>
    <message>
        <source>Monospaced</source>
        <translation>Feste Zeichenbreite</translation>
    </message>
    <message>
        <source>Non Monospaced</source>
        <translation>Variable Zeichenbreite</translation>
    </message>
    <message>
        <source>Foundry</source>
        <translation>Schriftgießerei</translation>
    </message>
    <message>
        <source>Foundry Name:</source>
        <translation>Name der Schriftgießerei:</translation>
    </message>
    <message>
        <source>Character Range</source>
        <translation>Zeichenbereich</translation>
    </message>
    <message>
        <source>Filters</source>
        <translation>Filter</translation>
    </message>
</context>
<context>
    <name>KrvFontDetailsTabWidget</name>
    <message>
        <source>Font Details</source>
        <translation>Einzelheiten der Schrift</translation>
    </message>
    <message>
        <source>Character Map</source>
        <translation>Zeichentabelle</translation>
    </message>
    <message>
        <source>Waterfall</source>
        <translation>Wasserfall</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Einzelheiten</translation>
    </message>
</context>
<context>
    <name>KrvFontDetailsTableWidget</name>
    <message>
        <source>Copy Text</source>
        <translation>Text kopieren</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Einzelheiten</translation>
    </message>
    <message>
        <source>Font Name</source>
        <translation>Schriftname</translation>
    </message>
    <message>
        <source>Style</source>
        <translation>Schnitt</translation>
    </message>
    <message>
        <source>PostScript Name</source>
        <translation>PostScript-Name</translation>
    </message>
    <message>
        <source>Filename</source>
        <translation>Dateiname</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>Vendor</source>
        <translation>Anbieter</translation>
    </message>
    <message>
        <source>Vendor URL</source>
        <translation>Anbieter im Netz</translation>
    </message>
    <message>
        <source>Designer</source>
        <translation>Gestalter</translation>
    </message>
    <message>
        <source>Designer URL</source>
        <translation>Gestalter im Netz</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Beschreibung</translation>
    </message>
    <message>
        <source>Trademark</source>
        <translation>Marke</translation>
    </message>
    <message>
        <source>License</source>
        <translation>Lizenz</translation>
    </message>
    <message>
        <source>License URL</source>
        <translation>Lizenz im Netz</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>Foundry</source>
        <translation>Schriftgießerei</translation>
    </message>
    <message>
        <source>Date Added</source>
        <translation>Hinzugefügt am</translation>
    </message>
    <message>
        <source>Other info2</source>
        <translation>Weitere Angaben 2</translation>
    </message>
    <message>
        <source>Id</source>
        <translation>Kennung</translation>
    </message>
    <message>
        <source>Bold</source>
        <translation>Fett</translation>
    </message>
    <message>
        <source>Italic</source>
        <translation>Kursiv</translation>
    </message>
    <message>
        <source>Active</source>
        <translation>Aktiv</translation>
    </message>
    <message>
        <source>Italic angle</source>
        <translation>Kursivwinkel</translation>
    </message>
    <message>
        <source>User groups</source>
        <translation>Benutzergruppen</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>Notiz</translation>
    </message>
    <message>
        <source>yes</source>
        <translation>ja</translation>
    </message>
    <message>
        <source>no</source>
        <translation>nein</translation>
    </message>
</context>
<context>
    <name>KrvFontManagerWindow</name>
    <message>
        <source>Kerval Font Manager</source>
        <translation>Kerval Schriftverwaltung</translation>
    </message>
    <message>
        <source>Fonts</source>
        <translation>Schriften</translation>
    </message>
    <message>
        <source>Tools</source>
        <translation>Werkzeuge</translation>
    </message>
    <message>
        <source>Font Scanner</source>
        <translation>Schriftsuche</translation>
    </message>
    <message>
        <source>No font of this group matches the filters.</source>
        <translation>Keine Schrift dieser Gruppe passt zu den Filtern.</translation>
    </message>
    <message>
        <source>This group holds no fonts.</source>
        <translation>Diese Gruppe enthält keine Schriften.</translation>
    </message>
    <message>
        <source>This group holds no fonts. Drag some from another list onto its name.</source>
        <translation>Diese Gruppe enthält keine Schriften. Ziehen Sie welche aus einer anderen Liste auf ihren Namen.</translation>
    </message>
    <message>
        <source>Looking for fonts. They appear here as they are read...</source>
        <translation>Schriften werden gesucht. Sie erscheinen hier, sobald sie gelesen sind...</translation>
    </message>
    <message>
        <source>The library is empty. Drop fonts or folders here, or rescan the system.</source>
        <translation>Die Bibliothek ist leer. Ziehen Sie Schriften oder Ordner hierher, oder durchsuchen Sie das System.</translation>
    </message>
    <message>
        <source>Unhide</source>
        <translation>Einblenden</translation>
    </message>
    <message>
        <source>Hide</source>
        <translation>Ausblenden</translation>
    </message>
    <message>
        <source>Mark as Web Font</source>
        <translation>Als Webschrift kennzeichnen</translation>
    </message>
    <message>
        <source>Unmark Web Font</source>
        <translation>Kennzeichen als Webschrift entfernen</translation>
    </message>
    <message>
        <source>Save File As</source>
        <translation>Datei speichern unter</translation>
    </message>
    <message>
        <source>The file &quot;%1&quot; exists already. Do you want to replace it?</source>
        <translation>Die Datei &quot;%1&quot; ist schon vorhanden. Möchten Sie sie ersetzen?</translation>
    </message>
    <message>
        <source>Sample text:</source>
        <translation>Beispieltext:</translation>
    </message>
    <message>
        <source>The quick brown fox jumps over lazy dog</source>
        <translation>Franz jagt im komplett verwahrlosten Taxi quer durch Bayern</translation>
    </message>
    <message>
        <source>PDF files (*.pdf)</source>
        <translation>PDF-Dateien (*.pdf)</translation>
    </message>
    <message>
        <source>Font Listing</source>
        <translation>Schriftliste</translation>
    </message>
    <message>
        <source>Creating Font Listing...</source>
        <translation>Schriftliste wird erstellt...</translation>
    </message>
    <message>
        <source>Create Font Listing of All Fonts</source>
        <translation>Liste aller Schriften erstellen</translation>
    </message>
    <message>
        <source>Create Font Listing</source>
        <translation>Schriftliste erstellen</translation>
    </message>
    <message>
        <source>Create Sample Sheet</source>
        <translation>Musterblatt erstellen</translation>
    </message>
    <message>
        <source>Creating Sample Sheet...</source>
        <translation>Musterblatt wird erstellt...</translation>
    </message>
    <message>
        <source>ZIP files (*.zip)</source>
        <translation>ZIP-Dateien (*.zip)</translation>
    </message>
    <message>
        <source>Export All Fonts</source>
        <translation>Alle Schriften exportieren</translation>
    </message>
    <message>
        <source>Exporting All Fonts...</source>
        <translation>Alle Schriften werden exportiert...</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exportieren</translation>
    </message>
    <message>
        <source>Exporting Fonts...</source>
        <translation>Schriften werden exportiert...</translation>
    </message>
    <message>
        <source>Add/Scan Files</source>
        <translation>Dateien hinzufügen</translation>
    </message>
    <message>
        <source>Add/Scan Folders</source>
        <translation>Ordner hinzufügen</translation>
    </message>
    <message>
        <source>Rescan Fonts</source>
        <translation>Schriften neu suchen</translation>
    </message>
    <message>
        <source>Kerval will try to find new fonts amongst the fonts installed on your operating system, and in your custom scan paths, and add/scan the ones which are not yet added.
This might take a while. Are you sure you want to continue?</source>
        <translation>Kerval sucht unter den Schriften Ihres Betriebssystems und in Ihren eigenen Suchordnern nach neuen Schriften und fügt die noch fehlenden hinzu.
Das kann eine Weile dauern. Möchten Sie wirklich fortfahren?</translation>
    </message>
    <message>
        <source>Reset Font Library</source>
        <translation>Schriftbibliothek zurücksetzen</translation>
    </message>
    <message>
        <source>Kerval will re-add/scan the fonts installed on your operating system, and in your custom scan paths.
This might take a while. Are you sure you want to continue?</source>
        <translation>Kerval liest die Schriften Ihres Betriebssystems und Ihrer eigenen Suchordner von Neuem ein.
Das kann eine Weile dauern. Möchten Sie wirklich fortfahren?</translation>
    </message>
    <message>
        <source>Resetting font library...</source>
        <translation>Schriftbibliothek wird zurückgesetzt...</translation>
    </message>
    <message>
        <source>Hiding fonts...</source>
        <translation>Schriften werden ausgeblendet...</translation>
    </message>
    <message>
        <source>Unhiding fonts...</source>
        <translation>Schriften werden eingeblendet...</translation>
    </message>
    <message>
        <source>Are you sure you want to remove the selected fonts?</source>
        <translation>Möchten Sie die gewählten Schriften wirklich entfernen?</translation>
    </message>
    <message>
        <source>Removing fonts...</source>
        <translation>Schriften werden entfernt...</translation>
    </message>
    <message>
        <source>Unarking fonts as Web Fonts...</source>
        <translation>Kennzeichen als Webschriften werden entfernt...</translation>
    </message>
    <message>
        <source>Enter web font data:</source>
        <translation>Angaben zur Webschrift:</translation>
    </message>
    <message>
        <source>Marking fonts as Web Fonts...</source>
        <translation>Schriften werden als Webschriften gekennzeichnet...</translation>
    </message>
    <message>
        <source>Are you sure you want to %1 %2 fonts?</source>
        <translation>Möchten Sie wirklich %2 Schriften %1?</translation>
    </message>
    <message>
        <source>activate</source>
        <translation>aktivieren</translation>
    </message>
    <message>
        <source>deactivate</source>
        <translation>deaktivieren</translation>
    </message>
    <message>
        <source>Font Activation</source>
        <translation>Schriften aktivieren</translation>
    </message>
    <message>
        <source>Font Deactivation</source>
        <translation>Schriften deaktivieren</translation>
    </message>
    <message>
        <source>Similar fonts to %1 %2</source>
        <translation>Ähnlich wie %1 %2</translation>
    </message>
    <message>
        <source>Body harmony for %1 %2</source>
        <translation>Textschriften, die zu %1 %2 passen</translation>
    </message>
    <message>
        <source>Headline harmony for %1 %2</source>
        <translation>Titelschriften, die zu %1 %2 passen</translation>
    </message>
    <message>
        <source>Fonts with contrasting style to %1 %2</source>
        <translation>Schriften im Gegensatz zu %1 %2</translation>
    </message>
    <message>
        <source>Same family harmony for %1 %2</source>
        <translation>Schriften aus der Familie von %1 %2</translation>
    </message>
    <message>
        <source>Smart Choice Mix</source>
        <translation>Gemischte Auswahl</translation>
    </message>
    <message>
        <source>Smart Choice Headline</source>
        <translation>Auswahl für Titel</translation>
    </message>
    <message>
        <source>Smart Choice Body</source>
        <translation>Auswahl für Text</translation>
    </message>
    <message>
        <source>Some of your font files doesn&apos;t exist anymore.
Kerval will now find and remove the nonexistent fonts from your library.</source>
        <translation>Einige Ihrer Schriftdateien gibt es nicht mehr.
Kerval sucht nun die fehlenden Schriften und entfernt sie aus Ihrer Bibliothek.</translation>
    </message>
    <message>
        <source>Finding/Removing nonexistent fonts...</source>
        <translation>Fehlende Schriften werden gesucht und entfernt...</translation>
    </message>
    <message>
        <source>Group name:</source>
        <translation>Name der Gruppe:</translation>
    </message>
    <message>
        <source>New Group</source>
        <translation>Neue Gruppe</translation>
    </message>
    <message>
        <source>group</source>
        <translation>Gruppe</translation>
    </message>
    <message>
        <source>New Group With Fonts</source>
        <translation>Neue Gruppe mit Schriften</translation>
    </message>
    <message>
        <source>Creating group with fonts...</source>
        <translation>Gruppe mit Schriften wird angelegt...</translation>
    </message>
    <message>
        <source>Rename Group</source>
        <translation>Gruppe umbenennen</translation>
    </message>
    <message>
        <source>Duplicate Group</source>
        <translation>Gruppe duplizieren</translation>
    </message>
    <message>
        <source>Duplicating group...</source>
        <translation>Gruppe wird dupliziert...</translation>
    </message>
    <message>
        <source>Are you sure that you want to delete the group named &apos;%1&apos;</source>
        <translation>Möchten Sie die Gruppe &apos;%1&apos; wirklich löschen?</translation>
    </message>
    <message>
        <source>Are you sure that you want to remove all fonts from the group named &apos;%1&apos;</source>
        <translation>Möchten Sie wirklich alle Schriften aus der Gruppe &apos;%1&apos; entfernen?</translation>
    </message>
    <message>
        <source>Add To Groups</source>
        <translation>Zu Gruppen hinzufügen</translation>
    </message>
    <message>
        <source>Adding fonts to groups...</source>
        <translation>Schriften werden den Gruppen hinzugefügt...</translation>
    </message>
    <message>
        <source>Removing fonts from group...</source>
        <translation>Schriften werden aus der Gruppe entfernt...</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Über Kerval</translation>
    </message>
    <message>
        <source>Close Window</source>
        <translation>Fenster schließen</translation>
    </message>
    <message>
        <source>Remove From Current Group</source>
        <translation>Aus dieser Gruppe entfernen</translation>
    </message>
    <message>
        <source>Activate Permanently</source>
        <translation>Dauerhaft aktivieren</translation>
    </message>
    <message>
        <source>Activate Temporarily</source>
        <translation>Vorübergehend aktivieren</translation>
    </message>
    <message>
        <source>Deactivate</source>
        <translation>Deaktivieren</translation>
    </message>
    <message>
        <source>Remove From Library</source>
        <translation>Aus der Bibliothek entfernen</translation>
    </message>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Show Font Details</source>
        <translation>Einzelheiten anzeigen</translation>
    </message>
    <message>
        <source>Reset Filters</source>
        <translation>Filter zurücksetzen</translation>
    </message>
    <message>
        <source>Duplicate</source>
        <translation>Duplizieren</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Leeren</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Similarity</source>
        <translation>Ähnlichkeit</translation>
    </message>
    <message>
        <source>Harmony Body</source>
        <translation>Passend für Text</translation>
    </message>
    <message>
        <source>Harmony Headline</source>
        <translation>Passend für Titel</translation>
    </message>
    <message>
        <source>Contrasting Style</source>
        <translation>Gegensätzlicher Stil</translation>
    </message>
    <message>
        <source>Same Family</source>
        <translation>Gleiche Familie</translation>
    </message>
    <message>
        <source>Export Fonts</source>
        <translation>Schriften exportieren</translation>
    </message>
    <message>
        <source>FontLens</source>
        <translation>FontLens</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Check for Updates</source>
        <translation>Nach Aktualisierungen suchen</translation>
    </message>
    <message>
        <source>Show in Windows Explorer</source>
        <translation>Im Dateimanager anzeigen</translation>
    </message>
    <message>
        <source>Copy Text</source>
        <translation>Text kopieren</translation>
    </message>
    <message>
        <source>Harmony</source>
        <translation>Harmonie</translation>
    </message>
    <message>
        <source>Smart Choice</source>
        <translation>Auswahl</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Groups</source>
        <translation>&amp;Gruppen</translation>
    </message>
    <message>
        <source>Ker&amp;val</source>
        <translation>Ker&amp;val</translation>
    </message>
    <message>
        <source>&amp;Tools</source>
        <translation>&amp;Werkzeuge</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>This font is no longer in the library.</source>
        <translation>Diese Schrift ist nicht mehr in der Bibliothek.</translation>
    </message>
    <message>
        <source>Unpack Archives</source>
        <translation>Archive entpacken</translation>
    </message>
    <message numerus="yes">
        <source>... and %n more</source>
        <translation>
            <numerusform>... und %n weiteres</numerusform>
            <numerusform>... und %n weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>One archive could not be added:</source>
        <translation>Ein Archiv konnte nicht hinzugefügt werden:</translation>
    </message>
    <message numerus="yes">
        <source>%n archives could not be added:</source>
        <comment>Not for one archive</comment>
        <translation>
            <numerusform>%n Archiv konnte nicht hinzugefügt werden:</numerusform>
            <numerusform>%n Archive konnten nicht hinzugefügt werden:</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>KrvFontsModelSearchBox</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Style</source>
        <translation>Schnitt</translation>
    </message>
    <message>
        <source>Foundry</source>
        <translation>Schriftgießerei</translation>
    </message>
    <message>
        <source>Designer</source>
        <translation>Gestalter</translation>
    </message>
    <message>
        <source>License</source>
        <translation>Lizenz</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Beschreibung</translation>
    </message>
    <message>
        <source>User note</source>
        <translation>Notiz</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
</context>
<context>
    <name>KrvFontsView</name>
    <message>
        <source>Columns</source>
        <translation>Spalten</translation>
    </message>
    <message>
        <source>Activity</source>
        <comment>Menu entry of the column that shows activity as an image</comment>
        <translation>Aktivität</translation>
    </message>
    <message numerus="yes">
        <source>%n fonts</source>
        <comment>Never one</comment>
        <translation>
            <numerusform>%n Schrift</numerusform>
            <numerusform>%n Schriften</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>KrvFontsViewModel</name>
    <message>
        <source>#</source>
        <translation>Nr.</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>Font Name</source>
        <translation>Schriftname</translation>
    </message>
    <message>
        <source>Style</source>
        <translation>Schnitt</translation>
    </message>
    <message>
        <source>PostScript Name</source>
        <translation>PostScript-Name</translation>
    </message>
    <message>
        <source>Filename</source>
        <translation>Dateiname</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>Vendor</source>
        <translation>Anbieter</translation>
    </message>
    <message>
        <source>Vendor URL</source>
        <translation>Anbieter im Netz</translation>
    </message>
    <message>
        <source>Designer</source>
        <translation>Gestalter</translation>
    </message>
    <message>
        <source>Designer URL</source>
        <translation>Gestalter im Netz</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Beschreibung</translation>
    </message>
    <message>
        <source>Trademark</source>
        <translation>Marke</translation>
    </message>
    <message>
        <source>License</source>
        <translation>Lizenz</translation>
    </message>
    <message>
        <source>License URL</source>
        <translation>Lizenz im Netz</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>Foundry</source>
        <translation>Schriftgießerei</translation>
    </message>
    <message>
        <source>Date Added</source>
        <translation>Hinzugefügt am</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>Notiz</translation>
    </message>
    <message>
        <source>Online Source</source>
        <translation>Quelle im Netz</translation>
    </message>
    <message>
        <source>Other info2</source>
        <translation>Weitere Angaben 2</translation>
    </message>
    <message>
        <source>Id</source>
        <translation>Kennung</translation>
    </message>
    <message>
        <source>Active</source>
        <translation>Aktiv</translation>
    </message>
    <message>
        <source>Bold</source>
        <translation>Fett</translation>
    </message>
    <message>
        <source>Italic</source>
        <translation>Kursiv</translation>
    </message>
    <message>
        <source>Italic angle</source>
        <translation>Kursivwinkel</translation>
    </message>
    <message>
        <source>Hidden</source>
        <translation>Ausgeblendet</translation>
    </message>
    <message>
        <source>Inactive</source>
        <translation>Inaktiv</translation>
    </message>
    <message>
        <source>Temporarily active</source>
        <translation>Vorübergehend aktiv</translation>
    </message>
    <message>
        <source>Permanently active</source>
        <translation>Dauerhaft aktiv</translation>
    </message>
    <message>
        <source>Google web fonts</source>
        <translation>Google-Webschriften</translation>
    </message>
    <message>
        <source>My web fonts</source>
        <translation>Meine Webschriften</translation>
    </message>
    <message>
        <source>This is a sample of body text that uses %1 %2</source>
        <translation>Ein Beispieltext, gesetzt in %1 %2</translation>
    </message>
    <message>
        <source>This is a sample of body text that uses %1</source>
        <translation>Ein Beispieltext, gesetzt in %1</translation>
    </message>
</context>
<context>
    <name>KrvMessage</name>
    <message>
        <source>don&apos;t show anymore</source>
        <comment>CheckBox text - don&apos;t show this message anymore</comment>
        <translation>nicht mehr anzeigen</translation>
    </message>
    <message>
        <source>Font(s) are now processed.</source>
        <comment>Message shown when all fonts are processed</comment>
        <translation>Die Schriften sind verarbeitet.</translation>
    </message>
    <message>
        <source>Font(s) are already processed.</source>
        <comment>Message shown when fonts are already processed</comment>
        <translation>Die Schriften waren bereits verarbeitet.</translation>
    </message>
    <message>
        <source>Unknown message</source>
        <comment>Message shown when some weird things occures</comment>
        <translation>Unbekannte Meldung</translation>
    </message>
</context>
<context>
    <name>KrvMessageSettingsUI</name>
    <message>
        <source>Form</source>
        <translation>Formular</translation>
    </message>
    <message>
        <source>Enabled messages</source>
        <translation>Eingeschaltete Meldungen</translation>
    </message>
</context>
<context>
    <name>KrvPreviewTextSettingsWidget</name>
    <message>
        <source>A sentence with the font's name</source>
        <translation>Ein Satz mit dem Schriftnamen</translation>
    </message>
    <message>
        <source>Own sample text</source>
        <translation>Eigener Beispieltext</translation>
    </message>
    <message>
        <source>%1 px</source>
        <translation>%1 px</translation>
    </message>
    <message>
        <source>Form</source>
        <translation>Formular</translation>
    </message>
    <message>
        <source>Sample text:</source>
        <translation>Beispieltext:</translation>
    </message>
    <message>
        <source>Preview size:</source>
        <translation>Größe der Vorschau:</translation>
    </message>
    <message>
        <source>Own sample text:</source>
        <translation>Eigener Beispieltext:</translation>
    </message>
</context>
<context>
    <name>KrvSearchBox2</name>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Clear the search</source>
        <translation>Suche leeren</translation>
    </message>
    <message>
        <source>What to search in</source>
        <translation>Worin gesucht wird</translation>
    </message>
</context>
<context>
    <name>KrvWaterfallWidget</name>
    <message>
        <source>Form</source>
        <translation>Formular</translation>
    </message>
    <message>
        <source>Sample text:</source>
        <translation>Beispieltext:</translation>
    </message>
    <message>
        <source>Sample text</source>
        <translation>Beispieltext</translation>
    </message>
    <message>
        <source>Waterfall</source>
        <translation>Wasserfall</translation>
    </message>
    <message>
        <source>%1 in %2 points</source>
        <translation>%1 in %2 Punkt</translation>
    </message>
</context>
<context>
    <name>LetterCutter</name>
    <message>
        <source>There is no ink here.</source>
        <translation>Hier ist nichts gezeichnet.</translation>
    </message>
    <message>
        <source>There is no picture, or it is too large.</source>
        <translation>Es gibt kein Bild oder es ist zu groß.</translation>
    </message>
    <message>
        <source>There are no points, or too many.</source>
        <translation>Es gibt keine Punkte oder zu viele.</translation>
    </message>
    <message>
        <source>A point lies outside of the picture.</source>
        <translation>Ein Punkt liegt außerhalb des Bildes.</translation>
    </message>
    <message>
        <source>The points lie too far from each other.</source>
        <translation>Die Punkte liegen zu weit auseinander.</translation>
    </message>
    <message>
        <source>There are too many cut lines.</source>
        <translation>Es gibt zu viele Schnittlinien.</translation>
    </message>
    <message>
        <source>What lies here reaches too far to be a letter.</source>
        <translation>Was hier liegt, reicht zu weit, um ein Buchstabe zu sein.</translation>
    </message>
</context>
<context>
    <name>OpenOutside</name>
    <message>
        <source>No program of this system opens the address
%1</source>
        <translation>Kein Programm dieses Systems öffnet die Adresse
%1</translation>
    </message>
    <message>
        <source>No file manager of this system shows the file
%1</source>
        <translation>Kein Dateimanager dieses Systems zeigt die Datei
%1</translation>
    </message>
</context>
<context>
    <name>PreferencesWindow</name>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>Messages</source>
        <translation>Meldungen</translation>
    </message>
</context>
<context>
    <name>PrintProgressDialog</name>
    <message>
        <source>The file &quot;%1&quot; could not be written.</source>
        <translation>Die Datei &quot;%1&quot; konnte nicht geschrieben werden.</translation>
    </message>
</context>
<context>
    <name>QProgressIndicator</name>
    <message>
        <source>Working</source>
        <translation>In Arbeit</translation>
    </message>
</context>
<context>
    <name>RecentlyActivatedFontsGroup</name>
    <message>
        <source>Recently Activated</source>
        <translation>Zuletzt aktiviert</translation>
    </message>
</context>
<context>
    <name>RecentlyAddedFontsGroup</name>
    <message>
        <source>Recently Added</source>
        <translation>Zuletzt hinzugefügt</translation>
    </message>
</context>
<context>
    <name>RecentlyDeactivatedFontsGroup</name>
    <message>
        <source>Recently Deactivated</source>
        <translation>Zuletzt deaktiviert</translation>
    </message>
</context>
<context>
    <name>RenderFontPreviewCommand</name>
    <message>
        <source>File cannot be found</source>
        <translation>Datei nicht gefunden</translation>
    </message>
    <message>
        <source>This preview cannot be rendered - missing glyphs</source>
        <translation>Keine Vorschau möglich - es fehlen Zeichen</translation>
    </message>
</context>
<context>
    <name>SelectedLetterWidget</name>
    <message>
        <source>Form</source>
        <translation>Form</translation>
    </message>
    <message>
        <source>letter:</source>
        <translation>Zeichen:</translation>
    </message>
    <message>
        <source>Remove this letter (Ctrl+Del)</source>
        <translation>Diesen Buchstaben entfernen (Strg+Entf)</translation>
    </message>
    <message>
        <source>Remove this letter</source>
        <translation>Diesen Buchstaben entfernen</translation>
    </message>
    <message>
        <source>Character of letter %1</source>
        <translation>Zeichen des Buchstabens %1</translation>
    </message>
    <message>
        <source>Type the character that this letter shows</source>
        <translation>Das Zeichen eingeben, das dieser Buchstabe zeigt</translation>
    </message>
</context>
<context>
    <name>SelectedLettersList</name>
    <message>
        <source>Form</source>
        <translation>Form</translation>
    </message>
    <message>
        <source>Selected letters</source>
        <translation>Ausgewählte Buchstaben</translation>
    </message>
    <message>
        <source>Click a letter in the picture to add it here</source>
        <translation>Einen Buchstaben im Bild anklicken, um ihn hier aufzunehmen</translation>
    </message>
</context>
<context>
    <name>SideBarModel</name>
    <message>
        <source>Library</source>
        <translation>Bibliothek</translation>
    </message>
    <message>
        <source>Groups</source>
        <translation>Gruppen</translation>
    </message>
</context>
<context>
    <name>SideBarWidget</name>
    <message>
        <source>Form</source>
        <translation>Formular</translation>
    </message>
    <message>
        <source>Groups</source>
        <translation>Gruppen</translation>
    </message>
</context>
<context>
    <name>SplashScreenDialog</name>
    <message>
        <source>Version: %1</source>
        <translation>Version: %1</translation>
    </message>
</context>
<context>
    <name>SystemFontsGroup</name>
    <message>
        <source>System Fonts</source>
        <translation>Systemschriften</translation>
    </message>
</context>
<context>
    <name>UpdateCheckDialog</name>
    <message>
        <source>Kerval - Check for Updates</source>
        <translation>Kerval - Nach Aktualisierungen suchen</translation>
    </message>
    <message>
        <source>Kerval - Check for updates</source>
        <translation>Kerval - Nach Aktualisierungen suchen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>No updates are available.&lt;br /&gt;You have the latest version of Kerval installed.</source>
        <translation>Es gibt keine Aktualisierung.&lt;br /&gt;Sie haben die neueste Version von Kerval.</translation>
    </message>
    <message>
        <source>A new version of Kerval is available.&lt;br /&gt;Click on the following link to download &lt;a href=&quot;%1&quot;&gt;Kerval %2&lt;/a&gt;!</source>
        <translation>Eine neue Version von Kerval ist erschienen.&lt;br /&gt;Laden Sie sie über diese Verknüpfung herunter: &lt;a href=&quot;%1&quot;&gt;Kerval %2&lt;/a&gt;!</translation>
    </message>
    <message>
        <source>Failed to check for updates.&lt;br /&gt;Please check your Internet connection!</source>
        <translation>Die Suche nach Aktualisierungen ist fehlgeschlagen.&lt;br /&gt;Bitte prüfen Sie Ihre Internetverbindung!</translation>
    </message>
    <message>
        <source>Checking for updates...</source>
        <translation>Nach Aktualisierungen wird gesucht...</translation>
    </message>
</context>
</TS>
