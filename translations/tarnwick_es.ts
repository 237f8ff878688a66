<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>KeyNames</name>
    <message>
        <source>Print</source>
        <translation>Impr Pant</translation>
    </message>
    <message>
        <source>Scroll Lock</source>
        <translation>Bloq Despl</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pausa</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menú</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Ayuda</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Reproducir</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Detener</translation>
    </message>
    <message>
        <source>Previous Track</source>
        <translation>Pista anterior</translation>
    </message>
    <message>
        <source>Next Track</source>
        <translation>Pista siguiente</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Silenciar</translation>
    </message>
    <message>
        <source>Volume Down</source>
        <translation>Bajar volumen</translation>
    </message>
    <message>
        <source>Volume Up</source>
        <translation>Subir volumen</translation>
    </message>
    <message>
        <source>Brightness Down</source>
        <translation>Menos brillo</translation>
    </message>
    <message>
        <source>Brightness Up</source>
        <translation>Más brillo</translation>
    </message>
    <message>
        <source>Calculator</source>
        <translation>Calculadora</translation>
    </message>
    <message>
        <source>Mail</source>
        <translation>Correo</translation>
    </message>
    <message>
        <source>Home Page</source>
        <translation>Página de inicio</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Buscar</translation>
    </message>
</context>
<context>
    <name>KeyboardShortcuts</name>
    <message>
        <source>Use Anyway</source>
        <translation>Usar de todos modos</translation>
    </message>
    <message>
        <source>Option may only be used in a shortcut together with Control or Command.</source>
        <translation>En un atajo, Opción solo se puede usar junto con Control o Comando.</translation>
    </message>
    <message>
        <source>This shortcut cannot be used because it belongs to the menu item “%@”.</source>
        <translation>Este atajo no se puede usar porque pertenece a la opción de menú «%@».</translation>
    </message>
    <message>
        <source>This shortcut is already used by the system.</source>
        <translation>El sistema ya usa este atajo.</translation>
    </message>
    <message>
        <source>The system’s shortcuts can be changed in the keyboard settings.</source>
        <translation>Los atajos del sistema se pueden cambiar en los ajustes del teclado.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>Press Shortcut</source>
        <translation>Pulsa el atajo</translation>
    </message>
    <message>
        <source>Record Shortcut</source>
        <translation>Grabar atajo</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Espacio</translation>
    </message>
</context>
<context>
    <name>PanelView</name>
    <message>
        <source>No hidden apps yet.
Right-click the chevron to add some.</source>
        <translation>Aún no hay aplicaciones ocultas.
Haz clic derecho en la flecha para añadirlas.</translation>
    </message>
</context>
<context>
    <name>Preferences</name>
    <message>
        <source>App icon</source>
        <translation>Icono de la aplicación</translation>
    </message>
    <message>
        <source>Menu bar icon</source>
        <translation>Icono de la barra de menús</translation>
    </message>
    <message>
        <source>Black &amp; white</source>
        <translation>Blanco y negro</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Color</translation>
    </message>
</context>
<context>
    <name>SettingsView</name>
    <message>
        <source>Open Privacy Settings…</source>
        <translation>Abrir los ajustes de privacidad…</translation>
    </message>
    <message>
        <source>Menu bar icons need Screen Capture permission. Grant it in the privacy settings.</source>
        <translation>Los iconos de la barra de menús necesitan permiso de captura de pantalla. Concédelo en los ajustes de privacidad.</translation>
    </message>
    <message>
        <source>The bar’s own parts</source>
        <translation>Partes propias de la barra</translation>
    </message>
    <message>
        <source>The clock and the application’s name belong to the bar and are set up there.</source>
        <translation>El reloj y el nombre de la aplicación son de la barra y se configuran en ella.</translation>
    </message>
    <message>
        <source>Open System Settings…</source>
        <translation>Abrir Ajustes del sistema…</translation>
    </message>
    <message>
        <source>Menu bar icons need Screen Recording permission. Grant it in System Settings, then restart Tarnwick.</source>
        <translation>Los iconos de la barra de menús necesitan permiso para grabar la pantalla. Concédelo en Ajustes del sistema y reinicia Tarnwick.</translation>
    </message>
    <message>
        <source>Apple menu bar icons</source>
        <translation>Iconos de Apple en la barra de menús</translation>
    </message>
    <message>
        <source>Wi-Fi, Bluetooth, battery and other Apple icons are managed by macOS.</source>
        <translation>macOS gestiona los iconos de Wi-Fi, Bluetooth, batería y otros de Apple.</translation>
    </message>
</context>
<context>
    <name>tarnwick::HiddenAppsSection</name>
    <message>
        <source>Hidden apps</source>
        <translation>Aplicaciones ocultas</translation>
    </message>
    <message>
        <source>No third-party menu bar apps found.</source>
        <translation>No hay aplicaciones de terceros en la barra de menús.</translation>
    </message>
    <message>
        <source>Rescan</source>
        <translation>Volver a buscar</translation>
    </message>
    <message>
        <source>Group %1</source>
        <translation>Grupo de %1</translation>
    </message>
    <message>
        <source>Group</source>
        <translation>Grupo</translation>
    </message>
</context>
<context>
    <name>tarnwick::MenuView</name>
    <message>
        <source>Waiting for the application</source>
        <translation>Esperando a la aplicación</translation>
    </message>
    <message>
        <source>More</source>
        <translation>Más</translation>
    </message>
</context>
<context>
    <name>tarnwick::PanelContent</name>
    <message>
        <source>Hidden apps</source>
        <translation>Aplicaciones ocultas</translation>
    </message>
</context>
<context>
    <name>tarnwick::RecorderWidget</name>
    <message>
        <source>Open the panel</source>
        <translation>Abrir el panel</translation>
    </message>
    <message>
        <source>Show everything briefly</source>
        <translation>Mostrar todo un momento</translation>
    </message>
</context>
<context>
    <name>tarnwick::SettingsForm</name>
    <message>
        <source>Tarnwick needs Accessibility access to find and move menu bar icons.</source>
        <translation>Tarnwick necesita acceso a Accesibilidad para encontrar y mover los iconos de la barra de menús.</translation>
    </message>
    <message>
        <source>Panel</source>
        <translation>Panel</translation>
    </message>
    <message>
        <source>Icons per row</source>
        <translation>Iconos por fila</translation>
    </message>
    <message>
        <source>Icon style</source>
        <translation>Estilo de icono</translation>
    </message>
    <message>
        <source>Menu bar icon</source>
        <translation>Icono de la barra de menús</translation>
    </message>
    <message>
        <source>Open Menu Bar Settings…</source>
        <translation>Abrir ajustes de la barra de menús…</translation>
    </message>
    <message>
        <source>Hotkeys</source>
        <translation>Atajos de teclado</translation>
    </message>
    <message>
        <source>Launch at login</source>
        <translation>Abrir al iniciar sesión</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Versión</translation>
    </message>
    <message>
        <source>Restart Tarnwick</source>
        <translation>Reiniciar Tarnwick</translation>
    </message>
    <message>
        <source>Quit Tarnwick</source>
        <translation>Salir de Tarnwick</translation>
    </message>
    <message>
        <source>Close Window</source>
        <translation>Cerrar ventana</translation>
    </message>
    <message>
        <source>What the panel shows of each application</source>
        <translation>Qué muestra el panel de cada aplicación</translation>
    </message>
    <message>
        <source>How Tarnwick’s own icon in the bar looks</source>
        <translation>Qué aspecto tiene el icono de Tarnwick en la barra</translation>
    </message>
</context>
<context>
    <name>tarnwick::Stepper</name>
    <message>
        <source>Increase</source>
        <translation>Aumentar</translation>
    </message>
    <message>
        <source>Decrease</source>
        <translation>Disminuir</translation>
    </message>
</context>
<context>
    <name>tarnwick::bar::AccessDialog</name>
    <message>
        <source>Screen Capture</source>
        <translation>Captura de pantalla</translation>
    </message>
    <message>
        <source>Accessibility</source>
        <translation>Accesibilidad</translation>
    </message>
    <message>
        <source>“%1” would like to take pictures of other applications’ status items.</source>
        <translation>«%1» quiere tomar imágenes de los iconos de estado de otras aplicaciones.</translation>
    </message>
    <message>
        <source>“%1” would like to control other applications’ status items.</source>
        <translation>«%1» quiere controlar los iconos de estado de otras aplicaciones.</translation>
    </message>
    <message>
        <source>It could see what they show, also while they are out of view.</source>
        <translation>Podría ver lo que muestran, también cuando no están a la vista.</translation>
    </message>
    <message>
        <source>It could list them, open their menus and move them within the bar.</source>
        <translation>Podría enumerarlos, abrir sus menús y moverlos dentro de la barra.</translation>
    </message>
    <message>
        <source>You can take this back in the bar’s privacy window.</source>
        <translation>Puedes retirarlo en la ventana de privacidad de la barra.</translation>
    </message>
    <message>
        <source>Don’t Allow</source>
        <translation>No permitir</translation>
    </message>
    <message>
        <source>Allow</source>
        <translation>Permitir</translation>
    </message>
</context>
<context>
    <name>tarnwick::bar::BarWindow</name>
    <message>
        <source>Menu Bar</source>
        <translation>Barra de menús</translation>
    </message>
</context>
<context>
    <name>tarnwick::bar::MenuBarPane</name>
    <message>
        <source>Show the date</source>
        <translation>Mostrar la fecha</translation>
    </message>
    <message>
        <source>Show the active application’s name</source>
        <translation>Mostrar el nombre de la aplicación activa</translation>
    </message>
    <message>
        <source>Menu Bar</source>
        <translation>Barra de menús</translation>
    </message>
    <message>
        <source>As in this region</source>
        <translation>Según la región</translation>
    </message>
    <message>
        <source>12 hours</source>
        <translation>12 horas</translation>
    </message>
    <message>
        <source>24 hours</source>
        <translation>24 horas</translation>
    </message>
    <message>
        <source>%1 points</source>
        <translation>%1 puntos</translation>
    </message>
    <message>
        <source>Clock:</source>
        <translation>Reloj:</translation>
    </message>
    <message>
        <source>Icons:</source>
        <translation>Iconos:</translation>
    </message>
</context>
<context>
    <name>tarnwick::bar::PrivacyWindow</name>
    <message>
        <source>Control other applications’ items</source>
        <translation>Controlar los iconos de otras aplicaciones</translation>
    </message>
    <message>
        <source>Take pictures of other applications’ items</source>
        <translation>Tomar imágenes de los iconos de otras aplicaciones</translation>
    </message>
    <message>
        <source>Privacy</source>
        <translation>Privacidad</translation>
    </message>
    <message>
        <source>These programs may do more with the status items of other applications than the bar lets everyone do.</source>
        <translation>Estos programas pueden hacer con los iconos de estado de otras aplicaciones más de lo que la barra permite a todos.</translation>
    </message>
    <message>
        <source>Let Refused Programs Ask Again</source>
        <translation>Permitir que los programas rechazados vuelvan a preguntar</translation>
    </message>
    <message>
        <source>No program has been allowed anything.</source>
        <translation>Ningún programa tiene permisos.</translation>
    </message>
    <message>
        <source>%1
since %2</source>
        <translation>%1
desde %2</translation>
    </message>
    <message>
        <source>Revoke</source>
        <translation>Retirar</translation>
    </message>
    <message>
        <source>The change could not be saved.</source>
        <translation>No se ha podido guardar el cambio.</translation>
    </message>
</context>
</TS>
