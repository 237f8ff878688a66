<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>KeyNames</name>
    <message>
        <source>Print</source>
        <translation>Druck</translation>
    </message>
    <message>
        <source>Scroll Lock</source>
        <translation>Rollen</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Wiedergabe</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stopp</translation>
    </message>
    <message>
        <source>Previous Track</source>
        <translation>Vorheriger Titel</translation>
    </message>
    <message>
        <source>Next Track</source>
        <translation>Nächster Titel</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Stumm</translation>
    </message>
    <message>
        <source>Volume Down</source>
        <translation>Leiser</translation>
    </message>
    <message>
        <source>Volume Up</source>
        <translation>Lauter</translation>
    </message>
    <message>
        <source>Brightness Down</source>
        <translation>Dunkler</translation>
    </message>
    <message>
        <source>Brightness Up</source>
        <translation>Heller</translation>
    </message>
    <message>
        <source>Calculator</source>
        <translation>Rechner</translation>
    </message>
    <message>
        <source>Mail</source>
        <translation>E-Mail</translation>
    </message>
    <message>
        <source>Home Page</source>
        <translation>Startseite</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suche</translation>
    </message>
</context>
<context>
    <name>KeyboardShortcuts</name>
    <message>
        <source>Use Anyway</source>
        <translation>Trotzdem verwenden</translation>
    </message>
    <message>
        <source>Option may only be used in a shortcut together with Control or Command.</source>
        <translation>In einem Tastenkürzel darf die Wahltaste nur zusammen mit der Steuerungs- oder der Befehlstaste stehen.</translation>
    </message>
    <message>
        <source>This shortcut cannot be used because it belongs to the menu item “%@”.</source>
        <translation>Dieses Tastenkürzel kann nicht verwendet werden, weil es zum Menüeintrag „%@“ gehört.</translation>
    </message>
    <message>
        <source>This shortcut is already used by the system.</source>
        <translation>Dieses Tastenkürzel wird bereits vom System verwendet.</translation>
    </message>
    <message>
        <source>The system’s shortcuts can be changed in the keyboard settings.</source>
        <translation>Die Tastenkürzel des Systems lassen sich in den Tastatureinstellungen ändern.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Press Shortcut</source>
        <translation>Tasten drücken</translation>
    </message>
    <message>
        <source>Record Shortcut</source>
        <translation>Aufnehmen</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Leertaste</translation>
    </message>
</context>
<context>
    <name>PanelView</name>
    <message>
        <source>No hidden apps yet.
Right-click the chevron to add some.</source>
        <translation>Noch keine ausgeblendeten Programme.
Ein Rechtsklick auf den Winkel fügt welche hinzu.</translation>
    </message>
</context>
<context>
    <name>Preferences</name>
    <message>
        <source>App icon</source>
        <translation>Programmsymbol</translation>
    </message>
    <message>
        <source>Menu bar icon</source>
        <translation>Menüleistensymbol</translation>
    </message>
    <message>
        <source>Black &amp; white</source>
        <translation>Schwarzweiß</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Farbe</translation>
    </message>
</context>
<context>
    <name>SettingsView</name>
    <message>
        <source>Open Privacy Settings…</source>
        <translation>Datenschutz-Einstellungen öffnen …</translation>
    </message>
    <message>
        <source>Menu bar icons need Screen Capture permission. Grant it in the privacy settings.</source>
        <translation>Menüleistensymbole brauchen die Erlaubnis zur Bildschirmaufnahme. Erteilen Sie sie in den Datenschutz-Einstellungen.</translation>
    </message>
    <message>
        <source>The bar’s own parts</source>
        <translation>Eigene Teile der Leiste</translation>
    </message>
    <message>
        <source>The clock and the application’s name belong to the bar and are set up there.</source>
        <translation>Die Uhr und der Programmname gehören zur Leiste und werden dort eingestellt.</translation>
    </message>
    <message>
        <source>Open System Settings…</source>
        <translation>Systemeinstellungen öffnen …</translation>
    </message>
    <message>
        <source>Menu bar icons need Screen Recording permission. Grant it in System Settings, then restart Tarnwick.</source>
        <translation>Menüleistensymbole brauchen die Erlaubnis zur Bildschirmaufnahme. Erteilen Sie sie in den Systemeinstellungen und starten Sie Tarnwick dann neu.</translation>
    </message>
    <message>
        <source>Apple menu bar icons</source>
        <translation>Menüleistensymbole von Apple</translation>
    </message>
    <message>
        <source>Wi-Fi, Bluetooth, battery and other Apple icons are managed by macOS.</source>
        <translation>WLAN, Bluetooth, Batterie und andere Symbole von Apple verwaltet macOS.</translation>
    </message>
</context>
<context>
    <name>tarnwick::HiddenAppsSection</name>
    <message>
        <source>Hidden apps</source>
        <translation>Ausgeblendete Programme</translation>
    </message>
    <message>
        <source>No third-party menu bar apps found.</source>
        <translation>Keine Programme anderer Anbieter in der Menüleiste gefunden.</translation>
    </message>
    <message>
        <source>Rescan</source>
        <translation>Erneut suchen</translation>
    </message>
    <message>
        <source>Group %1</source>
        <translation>Gruppe von %1</translation>
    </message>
    <message>
        <source>Group</source>
        <translation>Gruppe</translation>
    </message>
</context>
<context>
    <name>tarnwick::MenuView</name>
    <message>
        <source>Waiting for the application</source>
        <translation>Warten auf das Programm</translation>
    </message>
    <message>
        <source>More</source>
        <translation>Mehr</translation>
    </message>
</context>
<context>
    <name>tarnwick::PanelContent</name>
    <message>
        <source>Hidden apps</source>
        <translation>Ausgeblendete Programme</translation>
    </message>
</context>
<context>
    <name>tarnwick::RecorderWidget</name>
    <message>
        <source>Open the panel</source>
        <translation>Panel öffnen</translation>
    </message>
    <message>
        <source>Show everything briefly</source>
        <translation>Alles kurz einblenden</translation>
    </message>
</context>
<context>
    <name>tarnwick::SettingsForm</name>
    <message>
        <source>Tarnwick needs Accessibility access to find and move menu bar icons.</source>
        <translation>Tarnwick braucht Zugriff auf die Bedienungshilfen, um Menüleistensymbole zu finden und zu bewegen.</translation>
    </message>
    <message>
        <source>Panel</source>
        <translation>Panel</translation>
    </message>
    <message>
        <source>Icons per row</source>
        <translation>Symbole pro Zeile</translation>
    </message>
    <message>
        <source>Icon style</source>
        <translation>Symbolstil</translation>
    </message>
    <message>
        <source>Menu bar icon</source>
        <translation>Menüleistensymbol</translation>
    </message>
    <message>
        <source>Open Menu Bar Settings…</source>
        <translation>Menüleisten-Einstellungen öffnen …</translation>
    </message>
    <message>
        <source>Hotkeys</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>Launch at login</source>
        <translation>Beim Anmelden starten</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>Restart Tarnwick</source>
        <translation>Tarnwick neu starten</translation>
    </message>
    <message>
        <source>Quit Tarnwick</source>
        <translation>Tarnwick beenden</translation>
    </message>
    <message>
        <source>Close Window</source>
        <translation>Fenster schließen</translation>
    </message>
    <message>
        <source>What the panel shows of each application</source>
        <translation>Was das Panel von jedem Programm zeigt</translation>
    </message>
    <message>
        <source>How Tarnwick’s own icon in the bar looks</source>
        <translation>Wie das eigene Symbol von Tarnwick in der Leiste aussieht</translation>
    </message>
</context>
<context>
    <name>tarnwick::Stepper</name>
    <message>
        <source>Increase</source>
        <translation>Erhöhen</translation>
    </message>
    <message>
        <source>Decrease</source>
        <translation>Verringern</translation>
    </message>
</context>
<context>
    <name>tarnwick::bar::AccessDialog</name>
    <message>
        <source>Screen Capture</source>
        <translation>Bildschirmaufnahme</translation>
    </message>
    <message>
        <source>Accessibility</source>
        <translation>Bedienungshilfen</translation>
    </message>
    <message>
        <source>“%1” would like to take pictures of other applications’ status items.</source>
        <translation>„%1“ möchte Bilder der Statussymbole anderer Programme aufnehmen.</translation>
    </message>
    <message>
        <source>“%1” would like to control other applications’ status items.</source>
        <translation>„%1“ möchte die Statussymbole anderer Programme steuern.</translation>
    </message>
    <message>
        <source>It could see what they show, also while they are out of view.</source>
        <translation>Es könnte sehen, was sie zeigen, auch wenn sie nicht im Bild sind.</translation>
    </message>
    <message>
        <source>It could list them, open their menus and move them within the bar.</source>
        <translation>Es könnte sie auflisten, ihre Menüs öffnen und sie in der Leiste bewegen.</translation>
    </message>
    <message>
        <source>You can take this back in the bar’s privacy window.</source>
        <translation>Sie können das im Datenschutzfenster der Leiste zurücknehmen.</translation>
    </message>
    <message>
        <source>Don’t Allow</source>
        <translation>Nicht erlauben</translation>
    </message>
    <message>
        <source>Allow</source>
        <translation>Erlauben</translation>
    </message>
</context>
<context>
    <name>tarnwick::bar::BarWindow</name>
    <message>
        <source>Menu Bar</source>
        <translation>Menüleiste</translation>
    </message>
</context>
<context>
    <name>tarnwick::bar::MenuBarPane</name>
    <message>
        <source>Show the date</source>
        <translation>Datum anzeigen</translation>
    </message>
    <message>
        <source>Show the active application’s name</source>
        <translation>Namen des aktiven Programms anzeigen</translation>
    </message>
    <message>
        <source>Menu Bar</source>
        <translation>Menüleiste</translation>
    </message>
    <message>
        <source>As in this region</source>
        <translation>Wie in dieser Region</translation>
    </message>
    <message>
        <source>12 hours</source>
        <translation>12 Stunden</translation>
    </message>
    <message>
        <source>24 hours</source>
        <translation>24 Stunden</translation>
    </message>
    <message>
        <source>%1 points</source>
        <translation>%1 Punkte</translation>
    </message>
    <message>
        <source>Clock:</source>
        <translation>Uhr:</translation>
    </message>
    <message>
        <source>Icons:</source>
        <translation>Symbole:</translation>
    </message>
</context>
<context>
    <name>tarnwick::bar::PrivacyWindow</name>
    <message>
        <source>Control other applications’ items</source>
        <translation>Symbole anderer Programme steuern</translation>
    </message>
    <message>
        <source>Take pictures of other applications’ items</source>
        <translation>Bilder der Symbole anderer Programme aufnehmen</translation>
    </message>
    <message>
        <source>Privacy</source>
        <translation>Datenschutz</translation>
    </message>
    <message>
        <source>These programs may do more with the status items of other applications than the bar lets everyone do.</source>
        <translation>Diese Programme dürfen mit den Statussymbolen anderer Programme mehr tun, als die Leiste jedem erlaubt.</translation>
    </message>
    <message>
        <source>Let Refused Programs Ask Again</source>
        <translation>Abgelehnte Programme wieder fragen lassen</translation>
    </message>
    <message>
        <source>No program has been allowed anything.</source>
        <translation>Noch keinem Programm wurde etwas erlaubt.</translation>
    </message>
    <message>
        <source>%1
since %2</source>
        <translation>%1
seit %2</translation>
    </message>
    <message>
        <source>Revoke</source>
        <translation>Zurücknehmen</translation>
    </message>
    <message>
        <source>The change could not be saved.</source>
        <translation>Die Änderung konnte nicht gesichert werden.</translation>
    </message>
</context>
</TS>
