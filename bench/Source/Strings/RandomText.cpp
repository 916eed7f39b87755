#include "bench/Source/Strings/RandomText.h"

#include <algorithm>
#include <random>

namespace {

constexpr std::size_t kTotal = std::size_t{1} << 20;

const std::vector<std::string>& WordsOf(Script script) {
    static const std::vector<std::string> ascii = {
        "surface",    "group",   "position", "of",     "the",     "a",
        "controller", "fader",   "mixer",    "is",     "channel", "left",
        "extends",    "setting", "and",      "number", "bank",    "window",
        "studio",     "second",  "to",       "MIDI",   "device,", "installed."};
    static const std::vector<std::string> latin = {
        "déjà",  "été",       "à",    "la",     "naïveté", "façade",     "où",     "le",
        "coeur", "žluťoučký", "kůň",  "příliš", "Grüße",   "über",       "straße", "El",
        "niño",  "señal",     "ação", "não",    "ø",       "smørrebrød", "and",    "plain"};
    static const std::vector<std::string> eastern = {
        "поверхность", "группа", "в",    "и",    "канал",  "микшер",     "номер",      "уже",
        "設定",        "位置",   "的",   "編組", "混音器", "控制介面",   "チャンネル", "を",
        "選択する",    "장치",   "그룹", "번호", "это",    "подключён,", "第二",       "左"};
    return script == Script::kASCII ? ascii : script == Script::kAccentedLatin ? latin : eastern;
}

/// Cuts the text at the boundary of a character, and fills it up with full stops to its size.
void FitTo(std::size_t size, std::string& text) {
    std::size_t end = size;
    while ((static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
        --end;
    text.resize(end);
    text.resize(size, '.');
}

} // namespace

std::vector<std::string> RandomTexts(Script script, std::size_t size) {
    const std::vector<std::string>& words = WordsOf(script);
    std::mt19937 random(7);
    std::uniform_int_distribution<std::size_t> pick(0, words.size() - 1);
    std::vector<std::string> texts(std::max<std::size_t>(1, kTotal / size));
    for (std::string& text : texts) {
        while (text.size() <= size)
            text += words[pick(random)] + ' ';
        FitTo(size, text);
    }
    return texts;
}
