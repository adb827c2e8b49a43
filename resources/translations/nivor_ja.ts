<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja">
<context>
    <name></name>
    <message id="aboutMessage"><source></source><translation>USB接続のカメラから写真や動画を取り込みます。</translation></message>
    <message id="aboutTitle"><source></source><translation>NIVOR File Transferについて</translation></message>
    <message id="actionAbout"><source></source><translation>NIVOR File Transferについて</translation></message>
    <message id="actionCopyToFolder"><source></source><translation>フォルダーにコピー…</translation></message>
    <message id="actionDelete"><source></source><translation>削除…</translation></message>
    <message id="actionLargerThumbnails"><source></source><translation>サムネイルを大きく</translation></message>
    <message id="actionPlugIn"><source></source><translation>カメラを接続</translation></message>
    <message id="actionQuit"><source></source><translation>終了</translation></message>
    <message id="actionSelectAll"><source></source><translation>すべて選択</translation></message>
    <message id="actionShowLogFolder"><source></source><translation>ログフォルダーを表示</translation></message>
    <message id="actionSmallerThumbnails"><source></source><translation>サムネイルを小さく</translation></message>
    <message id="actionSortAscending"><source></source><translation>昇順</translation></message>
    <message id="actionSortDescending"><source></source><translation>降順</translation></message>
    <message id="actionUnplug"><source></source><translation>カメラを取り外す</translation></message>
    <message id="cancelButtonMessage"><source></source><translation>キャンセル</translation></message>
    <message id="chooseFolderTitle"><source></source><translation>コピー先のフォルダーを選択</translation></message>
    <message id="columnModified"><source></source><translation>更新日時</translation></message>
    <message id="columnName"><source></source><translation>名前</translation></message>
    <message id="columnSize"><source></source><translation>サイズ</translation></message>
    <message id="connectionRequestInformative"><source></source><translation>カメラをUSBケーブルで接続し、電源を入れてください。接続方法の選択を求められたら、PTPまたは画像転送を選んでください。写真や動画がここに自動的に表示されます。</translation></message>
    <message id="connectionRequestMessage"><source></source><translation>カメラが接続されていません。</translation></message>
    <message id="copyButtonTitle"><source></source><translation>フォルダーにコピー</translation></message>
    <message id="copyButtonToolTip"><source></source><translation>選択したファイルをこのコンピューターのフォルダーにコピー</translation></message>
    <message id="copyPanelTitle"><source></source><translation>コピー中</translation></message>
    <message id="copyProgressName"><source></source><translation>コピーの進行状況</translation></message>
    <message id="copyingMessage"><source></source><translation>「%2」に%1件をコピー中</translation></message>
    <message id="deleteAlertMessage"><source></source><translation>ファイルはカメラのカードからすぐに削除されます。この操作は取り消せません。</translation></message>
    <message id="deleteButtonMessage"><source></source><translation>削除</translation></message>
    <message id="deleteConfirmationMessage"><source></source><translation>選択したファイルをカメラから削除しますか？</translation></message>
    <message id="dragUnavailableMessage"><source></source><translation>このデスクトップでは、ファイルをウィンドウの外にドラッグできません。代わりに「%1」を使用してください。</translation></message>
    <message id="dropRefusedMessage"><source></source><translation>ドロップ先ではファイルを受け取れません。代わりに「%1」を使用してください。</translation></message>
    <message id="errorMessage"><source></source><translation>一部のファイルを処理できませんでした。</translation></message>
    <message id="hintEmptyInformative"><source></source><translation>新しく撮影した写真や動画は、カメラを再び接続するとここに表示されます。</translation></message>
    <message id="hintEmptyMessage"><source></source><translation>カメラにファイルがありません。</translation></message>
    <message id="hintReadingMessage"><source></source><translation>カメラを読み込み中…</translation></message>
    <message id="hintUnreadableInformative"><source></source><translation>カメラの電源を入れ直すか、いったん取り外してもう一度接続してください。スマートフォンの場合は、ロックを解除し、画像の転送を許可する必要があります。</translation></message>
    <message id="hintUnreadableMessage"><source></source><translation>カメラを読み込めません。</translation></message>
    <message id="listName"><source></source><translation>カメラ内のファイル</translation></message>
    <message id="menuEdit"><source></source><translation>編集(&amp;E)</translation></message>
    <message id="menuFile"><source></source><translation>ファイル(&amp;F)</translation></message>
    <message id="menuHelp"><source></source><translation>ヘルプ(&amp;H)</translation></message>
    <message id="menuSimulation"><source></source><translation>シミュレーション(&amp;S)</translation></message>
    <message id="menuSortBy"><source></source><translation>並べ替え</translation></message>
    <message id="menuView"><source></source><translation>表示(&amp;V)</translation></message>
    <message id="okButtonMessage"><source></source><translation>OK</translation></message>
    <message id="selectAllButtonTitle"><source></source><translation>すべて選択</translation></message>
    <message id="selectAllButtonToolTip"><source></source><translation>すべての行を選択（すべて選択済みの場合は選択を解除）</translation></message>
    <message id="statusCopied"><source></source><translation>%2 個中 %1 個のファイルをコピーしました</translation></message>
    <message id="statusDeleted"><source></source><translation>%2 個中 %1 個のファイルを削除しました</translation></message>
    <message id="statusDeleting"><source></source><translation>削除中…</translation></message>
    <message id="statusIncomplete"><source></source><translation>リストは不完全です</translation></message>
    <message id="statusItems" numerus="yes"><source></source><translation><numerusform>%n個の項目</numerusform></translation></message>
    <message id="statusNoCamera"><source></source><translation>カメラなし</translation></message>
    <message id="statusReading"><source></source><translation>カメラを読み込み中…</translation></message>
    <message id="statusReadingCount"><source></source><translation>カメラを読み込み中… %1 / %2</translation></message>
    <message id="statusSelected" numerus="yes"><source></source><translation><numerusform>%n個を選択中</numerusform></translation></message>
    <message id="statusSeparator"><source></source><translation>、</translation></message>
    <message id="statusStopped"><source></source><translation>停止しました。%2 個中 %1 個のファイルをコピー済み</translation></message>
    <message id="stopButtonDescription"><source></source><translation>カメラに停止を要求（コピー済みのファイルは残ります）</translation></message>
    <message id="stopButtonMessage"><source></source><translation>停止</translation></message>
    <message id="stoppingMessage"><source></source><translation>停止中…</translation></message>
    <message id="thumbnailSliderName"><source></source><translation>サムネイルのサイズ</translation></message>
    <message id="timeLeftMessage"><source></source><translation>%1、残り%2</translation></message>
    <message id="transferCapacityMessage"><source></source><translation>%1 / %2</translation></message>
    <message id="trashButtonTitle"><source></source><translation>削除</translation></message>
    <message id="trashButtonToolTip"><source></source><translation>選択したファイルをカメラから削除（確認あり）</translation></message>
</context>
</TS>
