// The page's words in English. Names in braces are filled in.

export const texts = {
    // the page
    tagline: 'Softens drawings in flat colours, region by region. Nothing leaves this browser.',
    open: 'Open drawings…', openTip: 'PNG or TGA; several files are the frames of a sequence. Dropping or pasting works too.',
    openSample: 'Sample', undo: 'Undo', redo: 'Redo', reset: 'Start over', resetTip: 'Takes all settings back to the defaults',
    language: 'Language', samePixels: 'Same pixels?',
    samePixelsTip: 'Checks that this browser renders exactly what every other machine does',
    dropHere: 'Drop drawings or a settings file', close: 'Close', settingsHeading: 'Settings', pictureHeading: 'Picture',

    // the stage
    stage: 'Picture. Arrow keys move it, plus and minus zoom, 0 fits it, 1 shows it at 100 %, ' +
        'Enter clicks the pixel at the crosshair, B shows the drawing while held',
    zoomIn: 'Zoom in', zoomOut: 'Zoom out', fit: 'Fit', full: '100 %', percent: '{value} %',
    background: 'Background', checkerboard: 'Checkerboard', oneColor: 'One colour', backgroundColor: 'Colour of the background',
    wipe: 'Before and after', wipeTip: 'Left of the line is the drawing as it was', hold: 'Before (hold B)',
    holdTip: 'Shows the drawing as it was while this button or the key B is held',
    draft: 'Draft', draftTip: 'A quick preview with pixels left out: thin lines have gaps. The full picture follows.',
    draftTime: 'draft {milliseconds} ms', fullTime: '{milliseconds} ms', progress: 'Rendering',

    // frames
    frames: 'Frames', firstFrame: 'First frame', previousFrame: 'Previous frame', nextFrame: 'Next frame',
    lastFrame: 'Last frame',
    frame: 'Frame', frameOf: 'frame {frame} ({place} of {count})',

    // clicking colours
    guideStart: 'Click a light colour in the picture, then its shadow.',
    guideShadow: 'Light {color}. Now click its shadow, or a highlight on it.',
    guideSlot: 'Click a colour in the picture for “{label}”.',
    guideFull: 'All four Process stages are taken. This pair fits into a next pass.',
    giveUp: 'Give up (Esc)', gaveUp: 'Given up.', nextPass: 'Next pass',
    transparentClicked: 'This pixel is transparent; transparent pixels are never selected. Click a coloured one.',
    given: '“{label}” is {color} now.', paired: '{light} and {shadow} are a pair in Process {stage} now.',
    pairNoFlat: 'The picture has no flat colour {color}.',
    pairSame: 'Both are {color}: the second click is for the colour beside the first.',
    pairApart: '{light} and {shadow} touch nowhere, so there is no border to soften.',
    helpPair: 'Click another colour as the shadow, or press Esc to begin anew.',

    // colours
    colorsHeading: 'Colours of the picture', swatchName: '{color}, {share} % of the picture',
    moreColors: 'and {count} more colours',
    colorsHelp: 'Clicking one here is clicking it in the picture.',
    pairsHeading: 'Pairs that look like light and shadow', noPairs: 'No two colours of this picture look like a pair.',
    pairShadow: '{shadow}, shadow of {light}; Boundary Blur {blur}',
    pairHighlight: '{shadow}, highlight on {light}; Boundary Blur {blur}',
    apply: 'Apply', suggest: 'Suggest settings',
    suggestTip: 'Replaces the settings by some for all these pairs; one undo takes them back',
    suggested: 'Settings for all pairs that were found.',
    nothingToSuggest: 'No two colours look like a pair. Click a light and its shadow in the picture instead.',

    // controls
    passes: 'Passes', onlyPass: 'One pass', passName: 'Pass {name}', addPass: 'Next pass',
    addPassTip: 'Adds a pass over the result of this one',
    removePass: 'Remove', pickFor: 'Choose the colour for “{label}” in the picture',
    takesWhole: 'Takes a whole number from {min} to {max}.', takesRange: 'Takes a number from {min} to {max}.',
    takesColor: 'Takes a colour as #RRGGBB or red,green,blue.',
    keyed: 'Has keys over time: this is its value at frame {frame}. Change keys in the settings file.',

    // report
    reportHeading: 'What each stage does', notesHeading: 'Notes', stageColumn: 'Stage', workColumn: 'Selected and changed',
    stageOff: 'off', stageNotInView: 'not in this view', stageRun: 'selected {selected} px, changed {changed}',
    cutByKeep: 'Keep Process cut {count} px of its soft edge', pixels: '{count} px',
    slotEmpty: 'No pixel of this frame has this colour. Click its swatch, then the colour in the picture.',
    slotTaken: 'Its pixels belong to the colours above already.',

    // taking home
    takeHeading: 'Take home', savePicture: 'Save picture (PNG)', saveSequence: 'Save all frames (zip)', stop: 'Stop',
    saveSettings: 'Save settings', loadSettings: 'Load settings…', copyCommand: 'Copy command', copyLink: 'Copy link',
    commandHeading: 'The same by the command', saved: 'Saved as {name}.', savingFrame: 'Saving frame {place} of {count}…',
    isSaving: 'The frames are still being saved. Wait for the end, or press Stop.',
    copied: 'Copied.', notCopied: 'The browser did not let the page copy.', settingsLoaded: 'Settings of {name}.',
    maskLeftOut: 'Its mask is kept, and does not count on this page.',
    settingsTooLarge: '{name} is larger than 1 MiB, which no settings file is.',
    settingsNotUtf8: '{name} is not text in UTF-8.',
    pasted: 'Pasted. The browser has decoded and encoded this picture again, so its values may differ from the file’s; ' +
        'to be sure, open the file itself.',

    // what to do
    helpOpen: 'Save the drawing as PNG (8 or 16 bits) or TGA and open it again. The picture before stays.',
    helpSettings: 'Mend the line, save the file as UTF-8 text and load it again. The settings before stay.',
    helpRender: 'Undo the last change, or open a smaller picture.',
    helpOther: 'Try it again. If it comes again, reload the page; the settings in the address stay.',
    helpSave: 'Check that the browser may download files, then try again.', helpCopy: 'Select the text and copy it by hand.',
    helpFrame: 'Mend that frame or leave it out, open the others and save again.',
    helpStart: 'Use a current Chrome, Edge, Firefox or Safari, and open the page through a web server or as the single file.',

    // same pixels
    checkHeading: 'Same pixels?',
    checkAbout: 'Renders small scenes here and compares each with the one hash that it has on every machine.',
    checkRunning: 'Rendering…', checkSingle: 'One thread', checkThreaded: '{threads} threads',
    checkAgree: '{agree} of {scenes} scenes agree ({seconds} s)',
    checkFirst: '“{scene}” should be {expected} and is {found}.',
    copy: 'Copy'
};
