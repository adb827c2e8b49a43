<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name></name>
    <message id="aboutMessage"><source></source><translation>Gets the pictures and films off a USB camera.</translation></message>
    <message id="aboutTitle"><source></source><translation>About NIVOR File Transfer</translation></message>
    <message id="actionAbout"><source></source><translation>About NIVOR File Transfer</translation></message>
    <message id="actionCopyToFolder"><source></source><translation>Copy to Folder…</translation></message>
    <message id="actionDelete"><source></source><translation>Delete…</translation></message>
    <message id="actionLargerThumbnails"><source></source><translation>Larger Thumbnails</translation></message>
    <message id="actionPlugIn"><source></source><translation>Plug the Camera In</translation></message>
    <message id="actionQuit"><source></source><translation>Quit</translation></message>
    <message id="actionSelectAll"><source></source><translation>Select All</translation></message>
    <message id="actionShowLogFolder"><source></source><translation>Show Log Folder</translation></message>
    <message id="actionSmallerThumbnails"><source></source><translation>Smaller Thumbnails</translation></message>
    <message id="actionSortAscending"><source></source><translation>Ascending</translation></message>
    <message id="actionSortDescending"><source></source><translation>Descending</translation></message>
    <message id="actionUnplug"><source></source><translation>Unplug the Camera</translation></message>
    <message id="cancelButtonMessage"><source></source><translation>Cancel</translation></message>
    <message id="chooseFolderTitle"><source></source><translation>Choose a Folder to Copy To</translation></message>
    <message id="columnModified"><source></source><translation>Modified</translation></message>
    <message id="columnName"><source></source><translation>Name</translation></message>
    <message id="columnSize"><source></source><translation>Size</translation></message>
    <message id="connectionRequestInformative"><source></source><translation>Connect the camera with a USB cable and switch it on. If it asks, choose PTP or picture transfer. Its pictures and films appear here by themselves.</translation></message>
    <message id="connectionRequestMessage"><source></source><translation>No camera is connected.</translation></message>
    <message id="copyButtonTitle"><source></source><translation>Copy to Folder</translation></message>
    <message id="copyButtonToolTip"><source></source><translation>Copies the selected files into a folder of this computer</translation></message>
    <message id="copyPanelTitle"><source></source><translation>Copying</translation></message>
    <message id="copyProgressName"><source></source><translation>Progress of the copy</translation></message>
    <message id="copyingMessage"><source></source><translation>Copying %1 to “%2”</translation></message>
    <message id="deleteAlertMessage"><source></source><translation>They are deleted from the camera’s card at once. This can’t be undone.</translation></message>
    <message id="deleteButtonMessage"><source></source><translation>Delete</translation></message>
    <message id="deleteConfirmationMessage"><source></source><translation>Delete the selected files from the camera?</translation></message>
    <message id="dragUnavailableMessage"><source></source><translation>Files can’t be dragged out on this desktop. Use “%1” instead.</translation></message>
    <message id="dropRefusedMessage"><source></source><translation>What you dropped the files on does not take them. Use “%1” instead.</translation></message>
    <message id="errorMessage"><source></source><translation>Some files could not be processed.</translation></message>
    <message id="hintEmptyInformative"><source></source><translation>Pictures and films that you take appear here when you connect the camera again.</translation></message>
    <message id="hintEmptyMessage"><source></source><translation>There is nothing on the camera.</translation></message>
    <message id="hintReadingMessage"><source></source><translation>Reading the camera…</translation></message>
    <message id="hintUnreadableInformative"><source></source><translation>Switch it off and on again, or unplug it and plug it in again. A phone must be unlocked and must allow the transfer of pictures.</translation></message>
    <message id="hintUnreadableMessage"><source></source><translation>The camera can’t be read.</translation></message>
    <message id="listName"><source></source><translation>Files on the camera</translation></message>
    <message id="menuEdit"><source></source><translation>&amp;Edit</translation></message>
    <message id="menuFile"><source></source><translation>&amp;File</translation></message>
    <message id="menuHelp"><source></source><translation>&amp;Help</translation></message>
    <message id="menuSimulation"><source></source><translation>&amp;Simulation</translation></message>
    <message id="menuSortBy"><source></source><translation>Sort by</translation></message>
    <message id="menuView"><source></source><translation>&amp;View</translation></message>
    <message id="okButtonMessage"><source></source><translation>OK</translation></message>
    <message id="selectAllButtonTitle"><source></source><translation>Select All</translation></message>
    <message id="selectAllButtonToolTip"><source></source><translation>Selects every row, or none when all are selected</translation></message>
    <message id="statusCopied"><source></source><translation>%1 of %2 files copied</translation></message>
    <message id="statusDeleted"><source></source><translation>%1 of %2 files deleted</translation></message>
    <message id="statusDeleting"><source></source><translation>Deleting…</translation></message>
    <message id="statusIncomplete"><source></source><translation>the list is incomplete</translation></message>
    <message id="statusItems" numerus="yes"><source></source><translation><numerusform>%n item</numerusform><numerusform>%n items</numerusform></translation></message>
    <message id="statusNoCamera"><source></source><translation>No camera</translation></message>
    <message id="statusReading"><source></source><translation>Reading camera…</translation></message>
    <message id="statusReadingCount"><source></source><translation>Reading camera… %1 of %2</translation></message>
    <message id="statusSelected" numerus="yes"><source></source><translation><numerusform>%n selected</numerusform><numerusform>%n selected</numerusform></translation></message>
    <message id="statusSeparator"><source></source><translation>, </translation></message>
    <message id="statusStopped"><source></source><translation>Stopped. %1 of %2 files copied</translation></message>
    <message id="stopButtonDescription"><source></source><translation>Asks the camera to stop; what has been copied stays</translation></message>
    <message id="stopButtonMessage"><source></source><translation>Stop</translation></message>
    <message id="stoppingMessage"><source></source><translation>Stopping…</translation></message>
    <message id="thumbnailSliderName"><source></source><translation>Size of the thumbnails</translation></message>
    <message id="timeLeftMessage"><source></source><translation>%1, %2 left</translation></message>
    <message id="transferCapacityMessage"><source></source><translation>%1 of %2</translation></message>
    <message id="trashButtonTitle"><source></source><translation>Delete</translation></message>
    <message id="trashButtonToolTip"><source></source><translation>Deletes the selected files from the camera, after asking</translation></message>
</context>
</TS>
