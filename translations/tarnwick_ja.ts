<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>KeyNames</name>
    <message>
        <source>Print</source>
        <translation>Print Screen</translation>
    </message>
    <message>
        <source>Scroll Lock</source>
        <translation>Scroll Lock</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>メニュー</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>ヘルプ</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>再生</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Previous Track</source>
        <translation>前の曲</translation>
    </message>
    <message>
        <source>Next Track</source>
        <translation>次の曲</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>消音</translation>
    </message>
    <message>
        <source>Volume Down</source>
        <translation>音量を下げる</translation>
    </message>
    <message>
        <source>Volume Up</source>
        <translation>音量を上げる</translation>
    </message>
    <message>
        <source>Brightness Down</source>
        <translation>画面を暗くする</translation>
    </message>
    <message>
        <source>Brightness Up</source>
        <translation>画面を明るくする</translation>
    </message>
    <message>
        <source>Calculator</source>
        <translation>電卓</translation>
    </message>
    <message>
        <source>Mail</source>
        <translation>メール</translation>
    </message>
    <message>
        <source>Home Page</source>
        <translation>ホームページ</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>検索</translation>
    </message>
</context>
<context>
    <name>KeyboardShortcuts</name>
    <message>
        <source>Use Anyway</source>
        <translation>それでも使用</translation>
    </message>
    <message>
        <source>Option may only be used in a shortcut together with Control or Command.</source>
        <translation>Option キーは、Control キーか Command キーと組み合わせないとショートカットに使えません。</translation>
    </message>
    <message>
        <source>This shortcut cannot be used because it belongs to the menu item “%@”.</source>
        <translation>このショートカットはメニュー項目「%@」に割り当てられているため、使えません。</translation>
    </message>
    <message>
        <source>This shortcut is already used by the system.</source>
        <translation>このショートカットはすでにシステムで使われています。</translation>
    </message>
    <message>
        <source>The system’s shortcuts can be changed in the keyboard settings.</source>
        <translation>システムのショートカットはキーボードの設定で変更できます。</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Press Shortcut</source>
        <translation>キーを入力</translation>
    </message>
    <message>
        <source>Record Shortcut</source>
        <translation>記録する</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>スペース</translation>
    </message>
</context>
<context>
    <name>PanelView</name>
    <message>
        <source>No hidden apps yet.
Right-click the chevron to add some.</source>
        <translation>非表示のアプリはまだありません。
山形のアイコンを右クリックして追加してください。</translation>
    </message>
</context>
<context>
    <name>Preferences</name>
    <message>
        <source>App icon</source>
        <translation>アプリのアイコン</translation>
    </message>
    <message>
        <source>Menu bar icon</source>
        <translation>メニューバーのアイコン</translation>
    </message>
    <message>
        <source>Black &amp; white</source>
        <translation>白黒</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>カラー</translation>
    </message>
</context>
<context>
    <name>SettingsView</name>
    <message>
        <source>Open Privacy Settings…</source>
        <translation>プライバシー設定を開く…</translation>
    </message>
    <message>
        <source>Menu bar icons need Screen Capture permission. Grant it in the privacy settings.</source>
        <translation>メニューバーのアイコンの表示には画面の取り込みの許可が必要です。プライバシー設定で許可してください。</translation>
    </message>
    <message>
        <source>The bar’s own parts</source>
        <translation>バー自身の項目</translation>
    </message>
    <message>
        <source>The clock and the application’s name belong to the bar and are set up there.</source>
        <translation>時計とアプリ名はバーのもので、バーの設定で変更します。</translation>
    </message>
    <message>
        <source>Open System Settings…</source>
        <translation>システム設定を開く…</translation>
    </message>
    <message>
        <source>Menu bar icons need Screen Recording permission. Grant it in System Settings, then restart Tarnwick.</source>
        <translation>メニューバーのアイコンを使うには画面収録の許可が必要です。システム設定で許可してから Tarnwick を再起動してください。</translation>
    </message>
    <message>
        <source>Apple menu bar icons</source>
        <translation>Apple のメニューバーアイコン</translation>
    </message>
    <message>
        <source>Wi-Fi, Bluetooth, battery and other Apple icons are managed by macOS.</source>
        <translation>Wi-Fi、Bluetooth、バッテリーなどの Apple のアイコンは macOS が管理します。</translation>
    </message>
</context>
<context>
    <name>tarnwick::HiddenAppsSection</name>
    <message>
        <source>Hidden apps</source>
        <translation>非表示のアプリ</translation>
    </message>
    <message>
        <source>No third-party menu bar apps found.</source>
        <translation>メニューバーに他社製のアプリはありません。</translation>
    </message>
    <message>
        <source>Rescan</source>
        <translation>再検索</translation>
    </message>
    <message>
        <source>Group %1</source>
        <translation>%1 のグループ</translation>
    </message>
    <message>
        <source>Group</source>
        <translation>グループ</translation>
    </message>
</context>
<context>
    <name>tarnwick::MenuView</name>
    <message>
        <source>Waiting for the application</source>
        <translation>アプリの応答を待っています</translation>
    </message>
    <message>
        <source>More</source>
        <translation>その他</translation>
    </message>
</context>
<context>
    <name>tarnwick::PanelContent</name>
    <message>
        <source>Hidden apps</source>
        <translation>非表示のアプリ</translation>
    </message>
</context>
<context>
    <name>tarnwick::RecorderWidget</name>
    <message>
        <source>Open the panel</source>
        <translation>パネルを開く</translation>
    </message>
    <message>
        <source>Show everything briefly</source>
        <translation>すべてをしばらく表示</translation>
    </message>
</context>
<context>
    <name>tarnwick::SettingsForm</name>
    <message>
        <source>Tarnwick needs Accessibility access to find and move menu bar icons.</source>
        <translation>メニューバーのアイコンを見つけて動かすには、Tarnwick にアクセシビリティの許可が必要です。</translation>
    </message>
    <message>
        <source>Panel</source>
        <translation>パネル</translation>
    </message>
    <message>
        <source>Icons per row</source>
        <translation>1 行のアイコン数</translation>
    </message>
    <message>
        <source>Icon style</source>
        <translation>アイコンの種類</translation>
    </message>
    <message>
        <source>Menu bar icon</source>
        <translation>メニューバーのアイコン</translation>
    </message>
    <message>
        <source>Open Menu Bar Settings…</source>
        <translation>メニューバーの設定を開く…</translation>
    </message>
    <message>
        <source>Hotkeys</source>
        <translation>ホットキー</translation>
    </message>
    <message>
        <source>Launch at login</source>
        <translation>ログイン時に起動</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>バージョン</translation>
    </message>
    <message>
        <source>Restart Tarnwick</source>
        <translation>Tarnwick を再起動</translation>
    </message>
    <message>
        <source>Quit Tarnwick</source>
        <translation>Tarnwick を終了</translation>
    </message>
    <message>
        <source>Close Window</source>
        <translation>ウインドウを閉じる</translation>
    </message>
    <message>
        <source>What the panel shows of each application</source>
        <translation>各アプリについてパネルに表示するもの</translation>
    </message>
    <message>
        <source>How Tarnwick’s own icon in the bar looks</source>
        <translation>バーに表示される Tarnwick 自身のアイコンの見た目</translation>
    </message>
</context>
<context>
    <name>tarnwick::Stepper</name>
    <message>
        <source>Increase</source>
        <translation>増やす</translation>
    </message>
    <message>
        <source>Decrease</source>
        <translation>減らす</translation>
    </message>
</context>
<context>
    <name>tarnwick::bar::AccessDialog</name>
    <message>
        <source>Screen Capture</source>
        <translation>画面の取り込み</translation>
    </message>
    <message>
        <source>Accessibility</source>
        <translation>アクセシビリティ</translation>
    </message>
    <message>
        <source>“%1” would like to take pictures of other applications’ status items.</source>
        <translation>“%1”が、ほかのアプリのステータス項目の画像を取り込もうとしています。</translation>
    </message>
    <message>
        <source>“%1” would like to control other applications’ status items.</source>
        <translation>“%1”が、ほかのアプリのステータス項目を操作しようとしています。</translation>
    </message>
    <message>
        <source>It could see what they show, also while they are out of view.</source>
        <translation>画面の外にある間も含めて、その表示内容を見られるようになります。</translation>
    </message>
    <message>
        <source>It could list them, open their menus and move them within the bar.</source>
        <translation>一覧の取得、メニューの操作、バーの中での移動ができるようになります。</translation>
    </message>
    <message>
        <source>You can take this back in the bar’s privacy window.</source>
        <translation>この許可はバーのプライバシーのウインドウで取り消せます。</translation>
    </message>
    <message>
        <source>Don’t Allow</source>
        <translation>許可しない</translation>
    </message>
    <message>
        <source>Allow</source>
        <translation>許可</translation>
    </message>
</context>
<context>
    <name>tarnwick::bar::BarWindow</name>
    <message>
        <source>Menu Bar</source>
        <translation>メニューバー</translation>
    </message>
</context>
<context>
    <name>tarnwick::bar::MenuBarPane</name>
    <message>
        <source>Show the date</source>
        <translation>日付を表示</translation>
    </message>
    <message>
        <source>Show the active application’s name</source>
        <translation>使用中のアプリ名を表示</translation>
    </message>
    <message>
        <source>Menu Bar</source>
        <translation>メニューバー</translation>
    </message>
    <message>
        <source>As in this region</source>
        <translation>地域に合わせる</translation>
    </message>
    <message>
        <source>12 hours</source>
        <translation>12 時間</translation>
    </message>
    <message>
        <source>24 hours</source>
        <translation>24 時間</translation>
    </message>
    <message>
        <source>%1 points</source>
        <translation>%1 ポイント</translation>
    </message>
    <message>
        <source>Clock:</source>
        <translation>時計:</translation>
    </message>
    <message>
        <source>Icons:</source>
        <translation>アイコン:</translation>
    </message>
</context>
<context>
    <name>tarnwick::bar::PrivacyWindow</name>
    <message>
        <source>Control other applications’ items</source>
        <translation>ほかのアプリの項目を操作</translation>
    </message>
    <message>
        <source>Take pictures of other applications’ items</source>
        <translation>ほかのアプリの項目の画像を取り込む</translation>
    </message>
    <message>
        <source>Privacy</source>
        <translation>プライバシー</translation>
    </message>
    <message>
        <source>These programs may do more with the status items of other applications than the bar lets everyone do.</source>
        <translation>これらのプログラムは、ほかのアプリのステータス項目に対して、通常バーが許す以上の操作ができます。</translation>
    </message>
    <message>
        <source>Let Refused Programs Ask Again</source>
        <translation>拒否したプログラムに再度の確認を許可</translation>
    </message>
    <message>
        <source>No program has been allowed anything.</source>
        <translation>許可されたプログラムはありません。</translation>
    </message>
    <message>
        <source>%1
since %2</source>
        <translation>%1
%2 から</translation>
    </message>
    <message>
        <source>Revoke</source>
        <translation>取り消す</translation>
    </message>
    <message>
        <source>The change could not be saved.</source>
        <translation>変更を保存できませんでした。</translation>
    </message>
</context>
</TS>
