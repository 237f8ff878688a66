<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>KeyNames</name>
    <message>
        <source>Print</source>
        <translation>Impr. écran</translation>
    </message>
    <message>
        <source>Scroll Lock</source>
        <translation>Arrêt défil.</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menu</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Aide</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Lecture</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Arrêt</translation>
    </message>
    <message>
        <source>Previous Track</source>
        <translation>Piste précédente</translation>
    </message>
    <message>
        <source>Next Track</source>
        <translation>Piste suivante</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Muet</translation>
    </message>
    <message>
        <source>Volume Down</source>
        <translation>Volume –</translation>
    </message>
    <message>
        <source>Volume Up</source>
        <translation>Volume +</translation>
    </message>
    <message>
        <source>Brightness Down</source>
        <translation>Luminosité –</translation>
    </message>
    <message>
        <source>Brightness Up</source>
        <translation>Luminosité +</translation>
    </message>
    <message>
        <source>Calculator</source>
        <translation>Calculatrice</translation>
    </message>
    <message>
        <source>Mail</source>
        <translation>Courriel</translation>
    </message>
    <message>
        <source>Home Page</source>
        <translation>Page d’accueil</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Rechercher</translation>
    </message>
</context>
<context>
    <name>KeyboardShortcuts</name>
    <message>
        <source>Use Anyway</source>
        <translation>Utiliser quand même</translation>
    </message>
    <message>
        <source>Option may only be used in a shortcut together with Control or Command.</source>
        <translation>Dans un raccourci, Option ne peut être utilisée qu’avec Contrôle ou Commande.</translation>
    </message>
    <message>
        <source>This shortcut cannot be used because it belongs to the menu item “%@”.</source>
        <translation>Ce raccourci ne peut pas être utilisé, car il appartient à l’élément de menu « %@ ».</translation>
    </message>
    <message>
        <source>This shortcut is already used by the system.</source>
        <translation>Ce raccourci est déjà utilisé par le système.</translation>
    </message>
    <message>
        <source>The system’s shortcuts can be changed in the keyboard settings.</source>
        <translation>Les raccourcis du système se modifient dans les réglages du clavier.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Press Shortcut</source>
        <translation>Saisir</translation>
    </message>
    <message>
        <source>Record Shortcut</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Espace</translation>
    </message>
</context>
<context>
    <name>PanelView</name>
    <message>
        <source>No hidden apps yet.
Right-click the chevron to add some.</source>
        <translation>Aucune application masquée.
Un clic droit sur le chevron permet d’en ajouter.</translation>
    </message>
</context>
<context>
    <name>Preferences</name>
    <message>
        <source>App icon</source>
        <translation>Icône de l’application</translation>
    </message>
    <message>
        <source>Menu bar icon</source>
        <translation>Icône de la barre des menus</translation>
    </message>
    <message>
        <source>Black &amp; white</source>
        <translation>Noir et blanc</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Couleur</translation>
    </message>
</context>
<context>
    <name>SettingsView</name>
    <message>
        <source>Open Privacy Settings…</source>
        <translation>Ouvrir les réglages de confidentialité…</translation>
    </message>
    <message>
        <source>Menu bar icons need Screen Capture permission. Grant it in the privacy settings.</source>
        <translation>Les icônes de la barre des menus nécessitent l’autorisation de capture d’écran. Accordez-la dans les réglages de confidentialité.</translation>
    </message>
    <message>
        <source>The bar’s own parts</source>
        <translation>Éléments propres à la barre</translation>
    </message>
    <message>
        <source>The clock and the application’s name belong to the bar and are set up there.</source>
        <translation>L’horloge et le nom de l’application appartiennent à la barre et s’y règlent.</translation>
    </message>
    <message>
        <source>Open System Settings…</source>
        <translation>Ouvrir les réglages du système…</translation>
    </message>
    <message>
        <source>Menu bar icons need Screen Recording permission. Grant it in System Settings, then restart Tarnwick.</source>
        <translation>Les icônes de la barre des menus nécessitent l’autorisation d’enregistrer l’écran. Accordez-la dans les réglages du système, puis redémarrez Tarnwick.</translation>
    </message>
    <message>
        <source>Apple menu bar icons</source>
        <translation>Icônes Apple de la barre des menus</translation>
    </message>
    <message>
        <source>Wi-Fi, Bluetooth, battery and other Apple icons are managed by macOS.</source>
        <translation>Les icônes Wi-Fi, Bluetooth, batterie et autres icônes Apple sont gérées par macOS.</translation>
    </message>
</context>
<context>
    <name>tarnwick::HiddenAppsSection</name>
    <message>
        <source>Hidden apps</source>
        <translation>Applications masquées</translation>
    </message>
    <message>
        <source>No third-party menu bar apps found.</source>
        <translation>Aucune application tierce dans la barre des menus.</translation>
    </message>
    <message>
        <source>Rescan</source>
        <translation>Rechercher à nouveau</translation>
    </message>
    <message>
        <source>Group %1</source>
        <translation>Groupe de %1</translation>
    </message>
    <message>
        <source>Group</source>
        <translation>Groupe</translation>
    </message>
</context>
<context>
    <name>tarnwick::MenuView</name>
    <message>
        <source>Waiting for the application</source>
        <translation>En attente de l’application</translation>
    </message>
    <message>
        <source>More</source>
        <translation>Plus</translation>
    </message>
</context>
<context>
    <name>tarnwick::PanelContent</name>
    <message>
        <source>Hidden apps</source>
        <translation>Applications masquées</translation>
    </message>
</context>
<context>
    <name>tarnwick::RecorderWidget</name>
    <message>
        <source>Open the panel</source>
        <translation>Ouvrir le panneau</translation>
    </message>
    <message>
        <source>Show everything briefly</source>
        <translation>Tout afficher brièvement</translation>
    </message>
</context>
<context>
    <name>tarnwick::SettingsForm</name>
    <message>
        <source>Tarnwick needs Accessibility access to find and move menu bar icons.</source>
        <translation>Tarnwick a besoin de l’accès à l’accessibilité pour trouver et déplacer les icônes de la barre des menus.</translation>
    </message>
    <message>
        <source>Panel</source>
        <translation>Panneau</translation>
    </message>
    <message>
        <source>Icons per row</source>
        <translation>Icônes par ligne</translation>
    </message>
    <message>
        <source>Icon style</source>
        <translation>Style d’icône</translation>
    </message>
    <message>
        <source>Menu bar icon</source>
        <translation>Icône de la barre des menus</translation>
    </message>
    <message>
        <source>Open Menu Bar Settings…</source>
        <translation>Ouvrir les réglages de la barre des menus…</translation>
    </message>
    <message>
        <source>Hotkeys</source>
        <translation>Raccourcis clavier</translation>
    </message>
    <message>
        <source>Launch at login</source>
        <translation>Ouvrir à la connexion</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>Restart Tarnwick</source>
        <translation>Redémarrer Tarnwick</translation>
    </message>
    <message>
        <source>Quit Tarnwick</source>
        <translation>Quitter Tarnwick</translation>
    </message>
    <message>
        <source>Close Window</source>
        <translation>Fermer la fenêtre</translation>
    </message>
    <message>
        <source>What the panel shows of each application</source>
        <translation>Ce que le panneau montre de chaque application</translation>
    </message>
    <message>
        <source>How Tarnwick’s own icon in the bar looks</source>
        <translation>Aspect de l’icône de Tarnwick dans la barre</translation>
    </message>
</context>
<context>
    <name>tarnwick::Stepper</name>
    <message>
        <source>Increase</source>
        <translation>Augmenter</translation>
    </message>
    <message>
        <source>Decrease</source>
        <translation>Diminuer</translation>
    </message>
</context>
<context>
    <name>tarnwick::bar::AccessDialog</name>
    <message>
        <source>Screen Capture</source>
        <translation>Capture d’écran</translation>
    </message>
    <message>
        <source>Accessibility</source>
        <translation>Accessibilité</translation>
    </message>
    <message>
        <source>“%1” would like to take pictures of other applications’ status items.</source>
        <translation>« %1 » souhaite capturer les icônes d’état d’autres applications.</translation>
    </message>
    <message>
        <source>“%1” would like to control other applications’ status items.</source>
        <translation>« %1 » souhaite contrôler les icônes d’état d’autres applications.</translation>
    </message>
    <message>
        <source>It could see what they show, also while they are out of view.</source>
        <translation>Elle pourrait voir ce qu’elles affichent, même lorsqu’elles sont hors de vue.</translation>
    </message>
    <message>
        <source>It could list them, open their menus and move them within the bar.</source>
        <translation>Elle pourrait les lister, ouvrir leurs menus et les déplacer dans la barre.</translation>
    </message>
    <message>
        <source>You can take this back in the bar’s privacy window.</source>
        <translation>Vous pouvez revenir sur ce choix dans la fenêtre Confidentialité de la barre.</translation>
    </message>
    <message>
        <source>Don’t Allow</source>
        <translation>Ne pas autoriser</translation>
    </message>
    <message>
        <source>Allow</source>
        <translation>Autoriser</translation>
    </message>
</context>
<context>
    <name>tarnwick::bar::BarWindow</name>
    <message>
        <source>Menu Bar</source>
        <translation>Barre des menus</translation>
    </message>
</context>
<context>
    <name>tarnwick::bar::MenuBarPane</name>
    <message>
        <source>Show the date</source>
        <translation>Afficher la date</translation>
    </message>
    <message>
        <source>Show the active application’s name</source>
        <translation>Afficher le nom de l’application active</translation>
    </message>
    <message>
        <source>Menu Bar</source>
        <translation>Barre des menus</translation>
    </message>
    <message>
        <source>As in this region</source>
        <translation>Selon la région</translation>
    </message>
    <message>
        <source>12 hours</source>
        <translation>12 heures</translation>
    </message>
    <message>
        <source>24 hours</source>
        <translation>24 heures</translation>
    </message>
    <message>
        <source>%1 points</source>
        <translation>%1 points</translation>
    </message>
    <message>
        <source>Clock:</source>
        <translation>Horloge :</translation>
    </message>
    <message>
        <source>Icons:</source>
        <translation>Icônes :</translation>
    </message>
</context>
<context>
    <name>tarnwick::bar::PrivacyWindow</name>
    <message>
        <source>Control other applications’ items</source>
        <translation>Contrôler les icônes d’autres applications</translation>
    </message>
    <message>
        <source>Take pictures of other applications’ items</source>
        <translation>Capturer les icônes d’autres applications</translation>
    </message>
    <message>
        <source>Privacy</source>
        <translation>Confidentialité</translation>
    </message>
    <message>
        <source>These programs may do more with the status items of other applications than the bar lets everyone do.</source>
        <translation>Ces programmes peuvent faire davantage avec les icônes d’état d’autres applications que ce que la barre permet à tous.</translation>
    </message>
    <message>
        <source>Let Refused Programs Ask Again</source>
        <translation>Laisser les programmes refusés redemander</translation>
    </message>
    <message>
        <source>No program has been allowed anything.</source>
        <translation>Aucun programme n’a d’autorisation.</translation>
    </message>
    <message>
        <source>%1
since %2</source>
        <translation>%1
depuis le %2</translation>
    </message>
    <message>
        <source>Revoke</source>
        <translation>Retirer</translation>
    </message>
    <message>
        <source>The change could not be saved.</source>
        <translation>La modification n’a pas pu être enregistrée.</translation>
    </message>
</context>
</TS>
