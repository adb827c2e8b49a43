<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name></name>
    <message id="aboutMessage"><source></source><translation>从 USB 相机导入照片和视频。</translation></message>
    <message id="aboutTitle"><source></source><translation>关于 NIVOR File Transfer</translation></message>
    <message id="actionAbout"><source></source><translation>关于 NIVOR File Transfer</translation></message>
    <message id="actionCopyToFolder"><source></source><translation>复制到文件夹…</translation></message>
    <message id="actionDelete"><source></source><translation>删除…</translation></message>
    <message id="actionLargerThumbnails"><source></source><translation>放大缩略图</translation></message>
    <message id="actionPlugIn"><source></source><translation>连接相机</translation></message>
    <message id="actionQuit"><source></source><translation>退出</translation></message>
    <message id="actionSelectAll"><source></source><translation>全选</translation></message>
    <message id="actionShowLogFolder"><source></source><translation>显示日志文件夹</translation></message>
    <message id="actionSmallerThumbnails"><source></source><translation>缩小缩略图</translation></message>
    <message id="actionSortAscending"><source></source><translation>升序</translation></message>
    <message id="actionSortDescending"><source></source><translation>降序</translation></message>
    <message id="actionUnplug"><source></source><translation>断开相机</translation></message>
    <message id="cancelButtonMessage"><source></source><translation>取消</translation></message>
    <message id="chooseFolderTitle"><source></source><translation>选择复制的目标文件夹</translation></message>
    <message id="columnModified"><source></source><translation>修改日期</translation></message>
    <message id="columnName"><source></source><translation>名称</translation></message>
    <message id="columnSize"><source></source><translation>大小</translation></message>
    <message id="connectionRequestInformative"><source></source><translation>请用 USB 线连接相机并打开相机电源。如果相机询问，请选择“PTP”或“图片传输”。照片和视频会自动显示在此处。</translation></message>
    <message id="connectionRequestMessage"><source></source><translation>未连接相机。</translation></message>
    <message id="copyButtonTitle"><source></source><translation>复制到文件夹</translation></message>
    <message id="copyButtonToolTip"><source></source><translation>将所选文件复制到此计算机上的文件夹</translation></message>
    <message id="copyPanelTitle"><source></source><translation>正在复制</translation></message>
    <message id="copyProgressName"><source></source><translation>复制进度</translation></message>
    <message id="copyingMessage"><source></source><translation>正在将 %1 个项目复制到“%2”</translation></message>
    <message id="deleteAlertMessage"><source></source><translation>这些文件将立即从相机的存储卡中删除。此操作无法撤销。</translation></message>
    <message id="deleteButtonMessage"><source></source><translation>删除</translation></message>
    <message id="deleteConfirmationMessage"><source></source><translation>要从相机中删除所选文件吗？</translation></message>
    <message id="dragUnavailableMessage"><source></source><translation>此桌面环境不支持将文件拖出窗口。请改用“%1”。</translation></message>
    <message id="dropRefusedMessage"><source></source><translation>目标位置不接受这些文件。请改用“%1”。</translation></message>
    <message id="errorMessage"><source></source><translation>部分文件无法处理。</translation></message>
    <message id="hintEmptyInformative"><source></source><translation>新拍摄的照片和视频会在重新连接相机后显示在此处。</translation></message>
    <message id="hintEmptyMessage"><source></source><translation>相机中没有文件。</translation></message>
    <message id="hintReadingMessage"><source></source><translation>正在读取相机…</translation></message>
    <message id="hintUnreadableInformative"><source></source><translation>请关闭相机后重新打开，或拔下后重新连接。手机必须处于解锁状态，并允许传输图片。</translation></message>
    <message id="hintUnreadableMessage"><source></source><translation>无法读取相机。</translation></message>
    <message id="listName"><source></source><translation>相机中的文件</translation></message>
    <message id="menuEdit"><source></source><translation>编辑(&amp;E)</translation></message>
    <message id="menuFile"><source></source><translation>文件(&amp;F)</translation></message>
    <message id="menuHelp"><source></source><translation>帮助(&amp;H)</translation></message>
    <message id="menuSimulation"><source></source><translation>模拟(&amp;S)</translation></message>
    <message id="menuSortBy"><source></source><translation>排序方式</translation></message>
    <message id="menuView"><source></source><translation>查看(&amp;V)</translation></message>
    <message id="okButtonMessage"><source></source><translation>确定</translation></message>
    <message id="selectAllButtonTitle"><source></source><translation>全选</translation></message>
    <message id="selectAllButtonToolTip"><source></source><translation>选择所有行；若已全部选择，则取消选择</translation></message>
    <message id="statusCopied"><source></source><translation>已复制 %1 个文件（共 %2 个）</translation></message>
    <message id="statusDeleted"><source></source><translation>已删除 %1 个文件（共 %2 个）</translation></message>
    <message id="statusDeleting"><source></source><translation>正在删除…</translation></message>
    <message id="statusIncomplete"><source></source><translation>列表不完整</translation></message>
    <message id="statusItems" numerus="yes"><source></source><translation><numerusform>%n 个项目</numerusform></translation></message>
    <message id="statusNoCamera"><source></source><translation>未连接相机</translation></message>
    <message id="statusReading"><source></source><translation>正在读取相机…</translation></message>
    <message id="statusReadingCount"><source></source><translation>正在读取相机… %1 / %2</translation></message>
    <message id="statusSelected" numerus="yes"><source></source><translation><numerusform>已选择 %n 个</numerusform></translation></message>
    <message id="statusSeparator"><source></source><translation>，</translation></message>
    <message id="statusStopped"><source></source><translation>已停止。已复制 %1 个文件（共 %2 个）</translation></message>
    <message id="stopButtonDescription"><source></source><translation>请求相机停止；已复制的文件会保留</translation></message>
    <message id="stopButtonMessage"><source></source><translation>停止</translation></message>
    <message id="stoppingMessage"><source></source><translation>正在停止…</translation></message>
    <message id="thumbnailSliderName"><source></source><translation>缩略图大小</translation></message>
    <message id="timeLeftMessage"><source></source><translation>%1，剩余 %2</translation></message>
    <message id="transferCapacityMessage"><source></source><translation>%1 / %2</translation></message>
    <message id="trashButtonTitle"><source></source><translation>删除</translation></message>
    <message id="trashButtonToolTip"><source></source><translation>确认后从相机中删除所选文件</translation></message>
</context>
</TS>
