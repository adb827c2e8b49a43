<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name></name>
    <message id="cancelButtonMessage"><source></source><translation>Cancel</translation></message>
    <message id="connectionRequestInformative"><source></source><translation>Connect the camera with a USB cable and switch it on. If it asks, choose PTP or picture transfer. Its pictures and films appear here by themselves.</translation></message>
    <message id="connectionRequestMessage"><source></source><translation>No camera is connected.</translation></message>
    <message id="copyPanelTitle"><source></source><translation>Copying</translation></message>
    <message id="copyProgressName"><source></source><translation>Progress of the copy</translation></message>
    <message id="copyingMessage"><source></source><translation>Copying %1 to “%2”</translation></message>
    <message id="deleteAlertMessage"><source></source><translation>They are deleted from the camera’s card at once. This can’t be undone.</translation></message>
    <message id="deleteButtonMessage"><source></source><translation>Delete</translation></message>
    <message id="deleteConfirmationMessage"><source></source><translation>Delete the selected files from the camera?</translation></message>
    <message id="errorMessage"><source></source><translation>Some files could not be processed.</translation></message>
    <message id="okButtonMessage"><source></source><translation>OK</translation></message>
    <message id="stopButtonDescription"><source></source><translation>Asks the camera to stop; what has been copied stays</translation></message>
    <message id="stopButtonMessage"><source></source><translation>Stop</translation></message>
    <message id="stoppingMessage"><source></source><translation>Stopping…</translation></message>
    <message id="timeLeftMessage"><source></source><translation>%1, %2 left</translation></message>
    <message id="transferCapacityMessage"><source></source><translation>%1 of %2</translation></message>
</context>
</TS>
