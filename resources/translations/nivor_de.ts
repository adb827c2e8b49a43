<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name></name>
    <message id="aboutMessage"><source></source><translation>Überträgt Bilder und Videos von einer USB-Kamera auf den Computer.</translation></message>
    <message id="aboutTitle"><source></source><translation>Über NIVOR File Transfer</translation></message>
    <message id="actionAbout"><source></source><translation>Über NIVOR File Transfer</translation></message>
    <message id="actionCopyToFolder"><source></source><translation>In Ordner kopieren…</translation></message>
    <message id="actionDelete"><source></source><translation>Löschen…</translation></message>
    <message id="actionLargerThumbnails"><source></source><translation>Größere Vorschaubilder</translation></message>
    <message id="actionPlugIn"><source></source><translation>Kamera anschließen</translation></message>
    <message id="actionQuit"><source></source><translation>Beenden</translation></message>
    <message id="actionSelectAll"><source></source><translation>Alles auswählen</translation></message>
    <message id="actionShowLogFolder"><source></source><translation>Protokollordner anzeigen</translation></message>
    <message id="actionSmallerThumbnails"><source></source><translation>Kleinere Vorschaubilder</translation></message>
    <message id="actionSortAscending"><source></source><translation>Aufsteigend</translation></message>
    <message id="actionSortDescending"><source></source><translation>Absteigend</translation></message>
    <message id="actionUnplug"><source></source><translation>Kamera abziehen</translation></message>
    <message id="cancelButtonMessage"><source></source><translation>Abbrechen</translation></message>
    <message id="chooseFolderTitle"><source></source><translation>Zielordner für die Kopie auswählen</translation></message>
    <message id="columnModified"><source></source><translation>Änderungsdatum</translation></message>
    <message id="columnName"><source></source><translation>Name</translation></message>
    <message id="columnSize"><source></source><translation>Größe</translation></message>
    <message id="connectionRequestInformative"><source></source><translation>Verbinden Sie die Kamera über ein USB-Kabel und schalten Sie sie ein. Wenn sie danach fragt, wählen Sie PTP oder Bildübertragung. Die Bilder und Videos erscheinen hier von selbst.</translation></message>
    <message id="connectionRequestMessage"><source></source><translation>Es ist keine Kamera angeschlossen.</translation></message>
    <message id="copyButtonTitle"><source></source><translation>In Ordner kopieren</translation></message>
    <message id="copyButtonToolTip"><source></source><translation>Kopiert die ausgewählten Dateien in einen Ordner auf diesem Computer</translation></message>
    <message id="copyPanelTitle"><source></source><translation>Kopieren</translation></message>
    <message id="copyProgressName"><source></source><translation>Fortschritt des Kopierens</translation></message>
    <message id="copyingMessage"><source></source><translation>Kopieren von %1 nach „%2“</translation></message>
    <message id="deleteAlertMessage"><source></source><translation>Die Dateien werden sofort von der Karte der Kamera gelöscht. Dies kann nicht rückgängig gemacht werden.</translation></message>
    <message id="deleteButtonMessage"><source></source><translation>Löschen</translation></message>
    <message id="deleteConfirmationMessage"><source></source><translation>Ausgewählte Dateien von der Kamera löschen?</translation></message>
    <message id="dragUnavailableMessage"><source></source><translation>Auf diesem Desktop können Dateien nicht herausgezogen werden. Verwenden Sie stattdessen „%1“.</translation></message>
    <message id="dropRefusedMessage"><source></source><translation>Das Ziel nimmt die Dateien nicht an. Verwenden Sie stattdessen „%1“.</translation></message>
    <message id="errorMessage"><source></source><translation>Einige Dateien konnten nicht verarbeitet werden.</translation></message>
    <message id="hintEmptyInformative"><source></source><translation>Neu aufgenommene Bilder und Videos erscheinen hier, sobald die Kamera wieder angeschlossen wird.</translation></message>
    <message id="hintEmptyMessage"><source></source><translation>Auf der Kamera sind keine Dateien.</translation></message>
    <message id="hintReadingMessage"><source></source><translation>Kamera wird gelesen…</translation></message>
    <message id="hintUnreadableInformative"><source></source><translation>Schalten Sie die Kamera aus und wieder ein oder ziehen Sie sie ab und schließen Sie sie wieder an. Ein Telefon muss entsperrt sein und die Übertragung von Bildern erlauben.</translation></message>
    <message id="hintUnreadableMessage"><source></source><translation>Die Kamera kann nicht gelesen werden.</translation></message>
    <message id="listName"><source></source><translation>Dateien auf der Kamera</translation></message>
    <message id="menuEdit"><source></source><translation>&amp;Bearbeiten</translation></message>
    <message id="menuFile"><source></source><translation>&amp;Datei</translation></message>
    <message id="menuHelp"><source></source><translation>&amp;Hilfe</translation></message>
    <message id="menuSimulation"><source></source><translation>&amp;Simulation</translation></message>
    <message id="menuSortBy"><source></source><translation>Sortieren nach</translation></message>
    <message id="menuView"><source></source><translation>&amp;Ansicht</translation></message>
    <message id="okButtonMessage"><source></source><translation>OK</translation></message>
    <message id="selectAllButtonTitle"><source></source><translation>Alles auswählen</translation></message>
    <message id="selectAllButtonToolTip"><source></source><translation>Wählt alle Zeilen aus oder hebt die Auswahl auf, wenn alle ausgewählt sind</translation></message>
    <message id="statusCopied"><source></source><translation>%1 von %2 Dateien kopiert</translation></message>
    <message id="statusDeleted"><source></source><translation>%1 von %2 Dateien gelöscht</translation></message>
    <message id="statusDeleting"><source></source><translation>Wird gelöscht…</translation></message>
    <message id="statusIncomplete"><source></source><translation>die Liste ist unvollständig</translation></message>
    <message id="statusItems" numerus="yes"><source></source><translation><numerusform>%n Element</numerusform><numerusform>%n Elemente</numerusform></translation></message>
    <message id="statusNoCamera"><source></source><translation>Keine Kamera</translation></message>
    <message id="statusReading"><source></source><translation>Kamera wird gelesen…</translation></message>
    <message id="statusReadingCount"><source></source><translation>Kamera wird gelesen… %1 von %2</translation></message>
    <message id="statusSelected" numerus="yes"><source></source><translation><numerusform>%n ausgewählt</numerusform><numerusform>%n ausgewählt</numerusform></translation></message>
    <message id="statusSeparator"><source></source><translation>, </translation></message>
    <message id="statusStopped"><source></source><translation>Gestoppt. %1 von %2 Dateien kopiert</translation></message>
    <message id="stopButtonDescription"><source></source><translation>Fordert die Kamera zum Stoppen auf; bereits Kopiertes bleibt erhalten</translation></message>
    <message id="stopButtonMessage"><source></source><translation>Stoppen</translation></message>
    <message id="stoppingMessage"><source></source><translation>Wird gestoppt…</translation></message>
    <message id="thumbnailSliderName"><source></source><translation>Größe der Vorschaubilder</translation></message>
    <message id="timeLeftMessage"><source></source><translation>%1, noch %2</translation></message>
    <message id="transferCapacityMessage"><source></source><translation>%1 von %2</translation></message>
    <message id="trashButtonTitle"><source></source><translation>Löschen</translation></message>
    <message id="trashButtonToolTip"><source></source><translation>Löscht die ausgewählten Dateien nach Rückfrage von der Kamera</translation></message>
</context>
</TS>
