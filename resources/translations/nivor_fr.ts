<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name></name>
    <message id="aboutMessage"><source></source><translation>Récupère les photos et les vidéos d’un appareil photo USB.</translation></message>
    <message id="aboutTitle"><source></source><translation>À propos de NIVOR File Transfer</translation></message>
    <message id="actionAbout"><source></source><translation>À propos de NIVOR File Transfer</translation></message>
    <message id="actionCopyToFolder"><source></source><translation>Copier dans un dossier…</translation></message>
    <message id="actionDelete"><source></source><translation>Supprimer…</translation></message>
    <message id="actionLargerThumbnails"><source></source><translation>Vignettes plus grandes</translation></message>
    <message id="actionPlugIn"><source></source><translation>Brancher l’appareil photo</translation></message>
    <message id="actionQuit"><source></source><translation>Quitter</translation></message>
    <message id="actionSelectAll"><source></source><translation>Tout sélectionner</translation></message>
    <message id="actionShowLogFolder"><source></source><translation>Afficher le dossier des journaux</translation></message>
    <message id="actionSmallerThumbnails"><source></source><translation>Vignettes plus petites</translation></message>
    <message id="actionSortAscending"><source></source><translation>Ordre croissant</translation></message>
    <message id="actionSortDescending"><source></source><translation>Ordre décroissant</translation></message>
    <message id="actionUnplug"><source></source><translation>Débrancher l’appareil photo</translation></message>
    <message id="cancelButtonMessage"><source></source><translation>Annuler</translation></message>
    <message id="chooseFolderTitle"><source></source><translation>Choisir le dossier de destination de la copie</translation></message>
    <message id="columnModified"><source></source><translation>Date de modification</translation></message>
    <message id="columnName"><source></source><translation>Nom</translation></message>
    <message id="columnSize"><source></source><translation>Taille</translation></message>
    <message id="connectionRequestInformative"><source></source><translation>Reliez l’appareil photo à l’aide d’un câble USB et allumez-le. S’il le demande, choisissez PTP ou le transfert d’images. Ses photos et vidéos s’affichent ici automatiquement.</translation></message>
    <message id="connectionRequestMessage"><source></source><translation>Aucun appareil photo n’est connecté.</translation></message>
    <message id="copyButtonTitle"><source></source><translation>Copier dans un dossier</translation></message>
    <message id="copyButtonToolTip"><source></source><translation>Copie les fichiers sélectionnés dans un dossier de cet ordinateur</translation></message>
    <message id="copyPanelTitle"><source></source><translation>Copie en cours</translation></message>
    <message id="copyProgressName"><source></source><translation>Progression de la copie</translation></message>
    <message id="copyingMessage"><source></source><translation>Copie de %1 dans « %2 »</translation></message>
    <message id="deleteAlertMessage"><source></source><translation>Ils sont immédiatement supprimés de la carte de l’appareil photo. Cette opération est irréversible.</translation></message>
    <message id="deleteButtonMessage"><source></source><translation>Supprimer</translation></message>
    <message id="deleteConfirmationMessage"><source></source><translation>Supprimer de l’appareil photo les fichiers sélectionnés ?</translation></message>
    <message id="dragUnavailableMessage"><source></source><translation>Ce bureau ne permet pas de faire glisser les fichiers hors de la fenêtre. Utilisez plutôt « %1 ».</translation></message>
    <message id="dropRefusedMessage"><source></source><translation>La cible n’accepte pas ces fichiers. Utilisez plutôt « %1 ».</translation></message>
    <message id="errorMessage"><source></source><translation>Certains fichiers n’ont pas pu être traités.</translation></message>
    <message id="hintEmptyInformative"><source></source><translation>Les nouvelles photos et vidéos s’afficheront ici lorsque l’appareil photo sera de nouveau connecté.</translation></message>
    <message id="hintEmptyMessage"><source></source><translation>L’appareil photo ne contient aucun fichier.</translation></message>
    <message id="hintReadingMessage"><source></source><translation>Lecture de l’appareil photo…</translation></message>
    <message id="hintUnreadableInformative"><source></source><translation>Éteignez-le puis rallumez-le, ou débranchez-le puis rebranchez-le. Un téléphone doit être déverrouillé et autoriser le transfert d’images.</translation></message>
    <message id="hintUnreadableMessage"><source></source><translation>Impossible de lire l’appareil photo.</translation></message>
    <message id="listName"><source></source><translation>Fichiers de l’appareil photo</translation></message>
    <message id="menuEdit"><source></source><translation>É&amp;dition</translation></message>
    <message id="menuFile"><source></source><translation>&amp;Fichier</translation></message>
    <message id="menuHelp"><source></source><translation>Aid&amp;e</translation></message>
    <message id="menuSimulation"><source></source><translation>&amp;Simulation</translation></message>
    <message id="menuSortBy"><source></source><translation>Trier par</translation></message>
    <message id="menuView"><source></source><translation>&amp;Affichage</translation></message>
    <message id="okButtonMessage"><source></source><translation>OK</translation></message>
    <message id="selectAllButtonTitle"><source></source><translation>Tout sélectionner</translation></message>
    <message id="selectAllButtonToolTip"><source></source><translation>Sélectionne toutes les lignes, ou aucune si elles sont toutes sélectionnées</translation></message>
    <message id="statusCopied"><source></source><translation>%1 fichiers copiés sur %2</translation></message>
    <message id="statusDeleted"><source></source><translation>%1 fichiers supprimés sur %2</translation></message>
    <message id="statusDeleting"><source></source><translation>Suppression…</translation></message>
    <message id="statusIncomplete"><source></source><translation>la liste est incomplète</translation></message>
    <message id="statusItems" numerus="yes"><source></source><translation><numerusform>%n élément</numerusform><numerusform>%n éléments</numerusform></translation></message>
    <message id="statusNoCamera"><source></source><translation>Aucun appareil photo</translation></message>
    <message id="statusReading"><source></source><translation>Lecture de l’appareil photo…</translation></message>
    <message id="statusReadingCount"><source></source><translation>Lecture de l’appareil photo… %1 sur %2</translation></message>
    <message id="statusSelected" numerus="yes"><source></source><translation><numerusform>%n sélectionné</numerusform><numerusform>%n sélectionnés</numerusform></translation></message>
    <message id="statusSeparator"><source></source><translation>, </translation></message>
    <message id="statusStopped"><source></source><translation>Arrêté. %1 fichiers copiés sur %2</translation></message>
    <message id="stopButtonDescription"><source></source><translation>Demande à l’appareil photo d’arrêter ; ce qui a déjà été copié est conservé</translation></message>
    <message id="stopButtonMessage"><source></source><translation>Arrêter</translation></message>
    <message id="stoppingMessage"><source></source><translation>Arrêt en cours…</translation></message>
    <message id="thumbnailSliderName"><source></source><translation>Taille des vignettes</translation></message>
    <message id="timeLeftMessage"><source></source><translation>%1, temps restant : %2</translation></message>
    <message id="transferCapacityMessage"><source></source><translation>%1 sur %2</translation></message>
    <message id="trashButtonTitle"><source></source><translation>Supprimer</translation></message>
    <message id="trashButtonToolTip"><source></source><translation>Supprime de l’appareil photo les fichiers sélectionnés, après confirmation</translation></message>
</context>
</TS>
