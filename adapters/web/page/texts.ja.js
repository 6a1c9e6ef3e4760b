// The page's words in Japanese.

/** @type {Record<keyof typeof import('./texts.en.js').texts, string>} */
export const texts = {
    // the page
    tagline: '塗り分けられた絵を、領域ごとにやわらかくします。データはこのブラウザーの外に出ません。',
    open: '絵を開く…', openTip: 'PNG または TGA。複数のファイルは連番のフレームになります。ドロップや貼り付けもできます。',
    openSample: 'サンプル', undo: '元に戻す', redo: 'やり直す', reset: '最初から', resetTip: 'すべての設定を初期値に戻します',
    language: '言語', samePixels: '同じ画素？', samePixelsTip: 'このブラウザーの結果がほかの環境とまったく同じかを調べます',
    dropHere: '絵または設定ファイルをドロップ', close: '閉じる', settingsHeading: '設定', pictureHeading: '画像',

    // the stage
    stage: '画像。矢印キーで移動、プラスとマイナスで拡大縮小、0 で全体表示、1 で 100 %、' +
        'Enter で十字の画素をクリック、B を押している間は元の絵を表示',
    zoomIn: '拡大', zoomOut: '縮小', fit: '全体', full: '100 %', percent: '{value} %',
    background: '背景', checkerboard: '市松模様', oneColor: '単色', backgroundColor: '背景の色',
    wipe: '前後の比較', wipeTip: '線の左が元の絵です', hold: '元の絵 (B を押している間)',
    holdTip: 'このボタンまたは B キーを押している間、元の絵を表示します',
    draft: '簡易表示', draftTip: '画素を間引いた速い表示です。細い線は途切れます。続いて完全な画像が出ます。',
    draftTime: '簡易表示 {milliseconds} ms', fullTime: '{milliseconds} ms', progress: 'レンダリング中',

    // frames
    frames: 'フレーム', firstFrame: '最初のフレーム', previousFrame: '前のフレーム', nextFrame: '次のフレーム',
    lastFrame: '最後のフレーム',
    frame: 'フレーム', frameOf: 'フレーム {frame} ({count} 枚中 {place} 枚目)',

    // clicking colours
    guideStart: '画像の中の明るい色をクリックし、続いてその影をクリックしてください。',
    guideShadow: '明るい色 {color}。次はその影(またはハイライト)をクリックしてください。',
    guideSlot: '「{label}」に使う色を画像の中でクリックしてください。',
    guideFull: '4 つの Process がすべて使われています。この組は次のパスに入ります。',
    giveUp: '中止 (Esc)', gaveUp: '中止しました。', nextPass: '次のパス',
    transparentClicked: 'この画素は透明です。透明な画素は選択されません。色のある画素をクリックしてください。',
    given: '「{label}」を {color} にしました。', paired: '{light} と {shadow} の組を Process {stage} に設定しました。',
    pairNoFlat: 'この画像には {color} で塗られた領域がありません。',
    pairSame: 'どちらも {color} です。2 回目は隣の色をクリックしてください。',
    pairApart: '{light} と {shadow} は接していないため、ぼかす境界がありません。',
    helpPair: '影として別の色をクリックするか、Esc で最初からやり直してください。',

    // colours
    colorsHeading: '画像の色', swatchName: '{color}、画像の {share} %', moreColors: 'ほか {count} 色',
    colorsHelp: 'ここでのクリックは、画像の中のその色のクリックと同じです。',
    pairsHeading: '明るい色と影に見える組', noPairs: 'この画像には組に見える 2 色がありません。',
    pairShadow: '{shadow} は {light} の影、Boundary Blur {blur}',
    pairHighlight: '{shadow} は {light} のハイライト、Boundary Blur {blur}',
    apply: '適用', suggest: '設定を提案', suggestTip: '見つかったすべての組の設定に置き換えます。一度の「元に戻す」で戻ります',
    suggested: '見つかったすべての組を設定しました。',
    nothingToSuggest: '組に見える 2 色がありません。画像の中の明るい色とその影をクリックしてください。',

    // controls
    passes: 'パス', onlyPass: 'パスは 1 つ', passName: 'パス {name}', addPass: '次のパス',
    addPassTip: 'この結果にさらに重ねるパスを加えます',
    removePass: '削除', pickFor: '「{label}」の色を画像から選ぶ',
    takesWhole: '{min} から {max} までの整数を入れてください。', takesRange: '{min} から {max} までの数を入れてください。',
    takesColor: '色は #RRGGBB または 赤,緑,青 の形で入れてください。',
    keyed: '時間のキーがあります。フレーム {frame} での値を表示しています。キーは設定ファイルで変えてください。',

    // report
    reportHeading: '各段階の働き', notesHeading: '注意', stageColumn: '段階', workColumn: '選択と変化',
    stageOff: 'オフ', stageNotInView: 'この表示では使いません', stageRun: '選択 {selected} px、変化 {changed}',
    cutByKeep: 'Keep Process により縁の {count} px が削られました', pixels: '{count} px',
    slotEmpty: 'このフレームにこの色の画素はありません。色見本を押してから、画像の中の色をクリックしてください。',
    slotTaken: 'この色の画素は、上の色にすでに含まれています。',

    // taking home
    takeHeading: '保存と書き出し', savePicture: '画像を保存 (PNG)', saveSequence: '全フレームを保存 (zip)', stop: '中止',
    saveSettings: '設定を保存', loadSettings: '設定を読み込む…', copyCommand: 'コマンドをコピー', copyLink: 'リンクをコピー',
    commandHeading: '同じことをするコマンド', saved: '{name} として保存しました。',
    savingFrame: '{count} 枚中 {place} 枚目を保存中…',
    isSaving: 'まだフレームを保存しています。終わるまで待つか、「中止」を押してください。',
    copied: 'コピーしました。', notCopied: 'ブラウザーがコピーを許可しませんでした。', settingsLoaded: '{name} の設定です。',
    maskLeftOut: 'マスクは設定に残りますが、このページでは働きません。',
    settingsTooLarge: '{name} は 1 MiB を超えています。設定ファイルではありません。',
    settingsNotUtf8: '{name} は UTF-8 のテキストではありません。',
    pasted: '貼り付けました。ブラウザーが画像を変換し直しているため、' +
        '値が元のファイルと異なることがあります。正確な値が必要なときは、ファイルそのものを開いてください。',

    // what to do
    helpOpen: '絵を PNG (8 または 16 ビット) か TGA で保存し、開き直してください。前の画像はそのまま残っています。',
    helpSettings: 'その行を直し、UTF-8 のテキストとして保存して読み込み直してください。前の設定はそのまま残っています。',
    helpRender: '直前の変更を元に戻すか、小さい画像を開いてください。',
    helpOther: 'もう一度お試しください。続くときはページを再読み込みしてください。設定はアドレスに残ります。',
    helpSave: 'ブラウザーがダウンロードを許可しているか確かめて、もう一度お試しください。',
    helpCopy: '文字列を選択して手でコピーしてください。',
    helpFrame: 'そのフレームを直すか除くかして開き直し、もう一度保存してください。',
    helpStart: '新しい Chrome、Edge、Firefox、Safari を使い、Web サーバー経由か単一ファイル版で開いてください。',

    // same pixels
    checkHeading: '同じ画素？', checkAbout: '小さな場面をここで描き、どの環境でも同じはずのハッシュと比べます。',
    checkRunning: 'レンダリング中…', checkSingle: '1 スレッド', checkThreaded: '{threads} スレッド',
    checkAgree: '{scenes} 場面中 {agree} 場面が一致 ({seconds} 秒)',
    checkFirst: '「{scene}」は {expected} のはずが {found} でした。', copy: 'コピー'
};
