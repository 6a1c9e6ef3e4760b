#include "render/Hints.h"

#include "render/ParamLabel.h"

#include <algorithm>
#include <array>
#include <string>

namespace kovalune::render {

namespace {

struct LabelHint {
    std::string_view label; ///< '#' stands for a number
    Hint hint;
};

constexpr std::array<LabelHint, 17> kHints = {{
    {"View",
     {"What is shown: the finished picture, all selected regions, the Base region, or one stage's layer "
      "alone.",
      "表示する内容です。完成画像、選択領域すべて、Base の領域、または各 Process "
      "のレイヤーだけを表示します。"}},
    {"Base",
     {"Takes up to four colours as one region and blurs the colour inside it; nothing from outside gets in.",
      "最大 4 色をひとつの領域として、その内側の色だけをぼかします。外側の色は混ざりません。"}},
    {"Blur Amount",
     {"How far colour travels inside the region, in pixels of the full picture; 0 leaves the region as it "
      "is.",
      "領域の内側で色が広がる距離です(原寸のピクセル単位)。0 では領域はそのままです。"}},
    {"Blur Repeat Num",
     {"How many passes of falling size follow the first one; more make the softness wider.",
      "最初のぼかしに続く、幅を狭めながら繰り返す回数です。多いほど広くやわらかくなります。"}},
    {"Keep Division",
     {"On, colour never passes a line through the region and each side is blurred by itself; off, it does.",
      "オンでは領域を分ける線を色が越えず、両側は別々にぼけます。オフでは線の向こうの色も混ざります。"}},
    {"Enable #", {"Makes this colour a part of the Base region.", "この色を Base の領域に加えます。"}},
    {"Color #",
     {"A flat colour of the drawing; its pixels belong to the Base region.",
      "Base の領域に含める、絵の中の塗り色です。"}},
    {"Color # Range",
     {"How far from the colour a pixel may be and still count, in percent; 0 takes the very colour.",
      "指定色からどこまで離れた色を含めるかをパーセントで表します。0 ではその色だけです。"}},
    {"Process #",
     {"Takes one colour and lets it run out softly over the regions of the stages before it.",
      "1 色の領域を、それまでの段階の領域の上へやわらかく広げます。"}},
    {"# : Enable Process", {"Switches this stage on.", "この Process を有効にします。"}},
    {"# : Color",
     {"The flat colour, a shadow's or a highlight's, that runs out in this stage.",
      "この Process で広げる、影やハイライトの塗り色です。"}},
    {"# : Color Range",
     {"How far from this stage's colour a pixel may be and still count, in percent; 0 takes the very colour.",
      "この Process の色からどこまで離れた色を含めるかをパーセントで表します。0 ではその色だけです。"}},
    {"# : Boundary Blur",
     {"How far the colour runs out beyond its own region, in pixels of the full picture.",
      "色が自分の領域の外へ広がる距離です(原寸のピクセル単位)。"}},
    {"# : Blur Repeat Num",
     {"How many passes of falling size follow the first one; more make the soft border longer at both ends.",
      "最初のぼかしに続く、幅を狭めながら繰り返す回数です。多いほど境界の両端が長くなります。"}},
    {"# : Boundary Bias",
     {"Steepens the soft border; 100 is a hard border again, further out.",
      "やわらかい境界を急にします。100 では外側に移った硬い境界になります。"}},
    {"# : Keep Division",
     {"On, the colour stops at the first line; off, it passes under the line and goes on after it.",
      "オンでは色は最初の線で止まります。オフでは線の下を通り、その先へも広がります。"}},
    {"# : Keep Process",
     {"Holds this stage's soft edge inside the last layer before it, as for a deep shadow inside a shadow.",
      "やわらかい縁を直前のレイヤーの内側に収めます。影の中の濃い影などに使います。"}},
}};

/// "Color # Range" for "Color 2 Range".
std::string withoutNumbers(std::string_view label) {
    std::string text(label);
    std::replace_if(
        text.begin(), text.end(), [](char each) { return each >= '1' && each <= '4'; }, '#');
    return text;
}

} // namespace

Hint hintOf(std::string_view label) {
    const std::string text = withoutNumbers(label);
    const auto isIts = [&text](const LabelHint& each) { return sameLabel(each.label, text); };
    const auto* const found = std::find_if(kHints.begin(), kHints.end(), isIts);
    return found == kHints.end() ? Hint{} : found->hint;
}

} // namespace kovalune::render
