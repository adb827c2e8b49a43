<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es">
<context>
    <name></name>
    <message id="aboutMessage"><source></source><translation>Descarga las fotos y los vídeos de una cámara USB.</translation></message>
    <message id="aboutTitle"><source></source><translation>Acerca de NIVOR File Transfer</translation></message>
    <message id="actionAbout"><source></source><translation>Acerca de NIVOR File Transfer</translation></message>
    <message id="actionCopyToFolder"><source></source><translation>Copiar en una carpeta…</translation></message>
    <message id="actionDelete"><source></source><translation>Eliminar…</translation></message>
    <message id="actionLargerThumbnails"><source></source><translation>Miniaturas más grandes</translation></message>
    <message id="actionPlugIn"><source></source><translation>Conectar la cámara</translation></message>
    <message id="actionQuit"><source></source><translation>Salir</translation></message>
    <message id="actionSelectAll"><source></source><translation>Seleccionar todo</translation></message>
    <message id="actionShowLogFolder"><source></source><translation>Mostrar la carpeta de registros</translation></message>
    <message id="actionSmallerThumbnails"><source></source><translation>Miniaturas más pequeñas</translation></message>
    <message id="actionSortAscending"><source></source><translation>Ascendente</translation></message>
    <message id="actionSortDescending"><source></source><translation>Descendente</translation></message>
    <message id="actionUnplug"><source></source><translation>Desconectar la cámara</translation></message>
    <message id="cancelButtonMessage"><source></source><translation>Cancelar</translation></message>
    <message id="chooseFolderTitle"><source></source><translation>Elegir la carpeta de destino de la copia</translation></message>
    <message id="columnModified"><source></source><translation>Fecha de modificación</translation></message>
    <message id="columnName"><source></source><translation>Nombre</translation></message>
    <message id="columnSize"><source></source><translation>Tamaño</translation></message>
    <message id="connectionRequestInformative"><source></source><translation>Conecte la cámara con un cable USB y enciéndala. Si lo pregunta, elija PTP o transferencia de imágenes. Las fotos y los vídeos aparecerán aquí automáticamente.</translation></message>
    <message id="connectionRequestMessage"><source></source><translation>No hay ninguna cámara conectada.</translation></message>
    <message id="copyButtonTitle"><source></source><translation>Copiar en una carpeta</translation></message>
    <message id="copyButtonToolTip"><source></source><translation>Copia los archivos seleccionados en una carpeta de este equipo</translation></message>
    <message id="copyPanelTitle"><source></source><translation>Copiando</translation></message>
    <message id="copyProgressName"><source></source><translation>Progreso de la copia</translation></message>
    <message id="copyingMessage"><source></source><translation>Copiando %1 en «%2»</translation></message>
    <message id="deleteAlertMessage"><source></source><translation>Se eliminarán de inmediato de la tarjeta de la cámara. Esta acción no se puede deshacer.</translation></message>
    <message id="deleteButtonMessage"><source></source><translation>Eliminar</translation></message>
    <message id="deleteConfirmationMessage"><source></source><translation>¿Eliminar de la cámara los archivos seleccionados?</translation></message>
    <message id="dragUnavailableMessage"><source></source><translation>En este escritorio no se pueden arrastrar archivos fuera de la ventana. Utilice «%1» en su lugar.</translation></message>
    <message id="dropRefusedMessage"><source></source><translation>El destino no acepta los archivos. Utilice «%1» en su lugar.</translation></message>
    <message id="errorMessage"><source></source><translation>No se pudieron procesar algunos archivos.</translation></message>
    <message id="hintEmptyInformative"><source></source><translation>Las fotos y los vídeos nuevos aparecerán aquí al volver a conectar la cámara.</translation></message>
    <message id="hintEmptyMessage"><source></source><translation>La cámara no contiene ningún archivo.</translation></message>
    <message id="hintReadingMessage"><source></source><translation>Leyendo la cámara…</translation></message>
    <message id="hintUnreadableInformative"><source></source><translation>Apáguela y vuelva a encenderla, o desconéctela y vuelva a conectarla. Un teléfono debe estar desbloqueado y permitir la transferencia de imágenes.</translation></message>
    <message id="hintUnreadableMessage"><source></source><translation>No se puede leer la cámara.</translation></message>
    <message id="listName"><source></source><translation>Archivos de la cámara</translation></message>
    <message id="menuEdit"><source></source><translation>&amp;Editar</translation></message>
    <message id="menuFile"><source></source><translation>&amp;Archivo</translation></message>
    <message id="menuHelp"><source></source><translation>Ay&amp;uda</translation></message>
    <message id="menuSimulation"><source></source><translation>&amp;Simulación</translation></message>
    <message id="menuSortBy"><source></source><translation>Ordenar por</translation></message>
    <message id="menuView"><source></source><translation>&amp;Ver</translation></message>
    <message id="okButtonMessage"><source></source><translation>Aceptar</translation></message>
    <message id="selectAllButtonTitle"><source></source><translation>Seleccionar todo</translation></message>
    <message id="selectAllButtonToolTip"><source></source><translation>Selecciona todas las filas, o ninguna si todas están seleccionadas</translation></message>
    <message id="statusCopied"><source></source><translation>%1 de %2 archivos copiados</translation></message>
    <message id="statusDeleted"><source></source><translation>%1 de %2 archivos eliminados</translation></message>
    <message id="statusDeleting"><source></source><translation>Eliminando…</translation></message>
    <message id="statusIncomplete"><source></source><translation>la lista está incompleta</translation></message>
    <message id="statusItems" numerus="yes"><source></source><translation><numerusform>%n elemento</numerusform><numerusform>%n elementos</numerusform></translation></message>
    <message id="statusNoCamera"><source></source><translation>Sin cámara</translation></message>
    <message id="statusReading"><source></source><translation>Leyendo la cámara…</translation></message>
    <message id="statusReadingCount"><source></source><translation>Leyendo la cámara… %1 de %2</translation></message>
    <message id="statusSelected" numerus="yes"><source></source><translation><numerusform>%n seleccionado</numerusform><numerusform>%n seleccionados</numerusform></translation></message>
    <message id="statusSeparator"><source></source><translation>, </translation></message>
    <message id="statusStopped"><source></source><translation>Detenido. %1 de %2 archivos copiados</translation></message>
    <message id="stopButtonDescription"><source></source><translation>Pide a la cámara que se detenga; lo que ya se ha copiado se conserva</translation></message>
    <message id="stopButtonMessage"><source></source><translation>Detener</translation></message>
    <message id="stoppingMessage"><source></source><translation>Deteniendo…</translation></message>
    <message id="thumbnailSliderName"><source></source><translation>Tamaño de las miniaturas</translation></message>
    <message id="timeLeftMessage"><source></source><translation>%1, tiempo restante: %2</translation></message>
    <message id="transferCapacityMessage"><source></source><translation>%1 de %2</translation></message>
    <message id="trashButtonTitle"><source></source><translation>Eliminar</translation></message>
    <message id="trashButtonToolTip"><source></source><translation>Elimina de la cámara los archivos seleccionados, previa confirmación</translation></message>
</context>
</TS>
