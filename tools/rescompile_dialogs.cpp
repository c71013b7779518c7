// Compiles res/dialogs.txt into the dialogs of res/tables.h. A line begins a dialog or stands for one of its
// controls; what no dialog can hold, and what a user could not reach or tell apart, is refused here, so that
// nothing of it has to be checked when the dialog opens.
#include "tools/rescompile.h"

#include "lib/charstr.h"
#include "lib/restable.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <iterator>
#include <ostream>
#include <vector>

namespace
{
constexpr int EXTENT_MAX = 1000; // dialog units; no screen is larger

constexpr unsigned ANY_STYLE = RES_HIDDEN | RES_GREY;
constexpr unsigned FOCUS_STYLE = ANY_STYLE | RES_NOTAB;

struct Kind {
    std::string_view word;
    const char *name; // of the constant
    ResCONTROLKIND kind;
    bool hasText;
    bool takesFocus;
    unsigned styles; // that it may have
};
constexpr Kind kinds[] = {
    {"label", "RES_LABEL", RES_LABEL, true, false, ANY_STYLE | RES_RIGHT | RES_CENTER},
    {"picture", "RES_PICTURE", RES_PICTURE, false, false, ANY_STYLE},
    {"frame", "RES_FRAME", RES_FRAME, true, false, ANY_STYLE},
    {"edit", "RES_EDIT", RES_EDIT, false, true, FOCUS_STYLE},
    {"memo", "RES_MEMO", RES_MEMO, false, true, FOCUS_STYLE},
    {"combo", "RES_COMBO", RES_COMBO, false, true, FOCUS_STYLE | RES_SORT},
    {"choice", "RES_CHOICE", RES_CHOICE, false, true, FOCUS_STYLE | RES_SORT},
    {"list", "RES_LIST", RES_LIST, false, true, FOCUS_STYLE | RES_SORT},
    {"button", "RES_BUTTON", RES_BUTTON, true, true, FOCUS_STYLE | RES_BITMAP},
    {"default", "RES_DEFAULT", RES_DEFAULT, true, true, FOCUS_STYLE | RES_BITMAP},
    {"check", "RES_CHECK", RES_CHECK, true, true, FOCUS_STYLE | RES_PUSH | RES_BITMAP},
    {"check3", "RES_CHECK3", RES_CHECK3, true, true, FOCUS_STYLE | RES_PUSH | RES_BITMAP},
    {"radio", "RES_RADIO", RES_RADIO, true, true, FOCUS_STYLE | RES_PUSH | RES_BITMAP},
};

struct Style {
    std::string_view word;
    const char *name;
    unsigned bit;
};
constexpr Style styles[] = {
    {"sort", "RES_SORT", RES_SORT},       {"right", "RES_RIGHT", RES_RIGHT},
    {"center", "RES_CENTER", RES_CENTER}, {"bitmap", "RES_BITMAP", RES_BITMAP},
    {"push", "RES_PUSH", RES_PUSH},       {"notab", "RES_NOTAB", RES_NOTAB},
    {"hidden", "RES_HIDDEN", RES_HIDDEN}, {"grey", "RES_GREY", RES_GREY},
};

struct Control {
    const Kind *kind;
    int line; // of the file
    int id;
    std::string text;
    int picture;
    int x, y, width, height; // dialog units
    unsigned style;
};
struct Dialog {
    int id;
    std::string caption;
    int width, height; // dialog units
    std::vector<Control> controls;
};

const Kind *FindKind(std::string_view word)
{
    const Kind *found =
        std::find_if(std::begin(kinds), std::end(kinds), [&](auto &k) { return k.word == word; });
    return found != std::end(kinds) ? found : NULL;
}

/// The mnemonic of a text in lower case, EOS where it has none.
char MnemonicOf(const Line &line, const std::string &text)
{
    char mnemonic = EOS;
    for (size_t i = text.find('&'); i != std::string::npos; i = text.find('&', i + 2)) {
        char c = i + 1 < text.size() ? text[i + 1] : EOS;
        if (c == '&')
            continue;
        if (!(ChrClass(c) & (CHR_ALPHA | CHR_DIGIT)))
            line.Refuse("& stands before the letter or digit of a mnemonic; && is the character itself");
        if (mnemonic != EOS)
            line.Refuse("a text has one mnemonic");
        mnemonic = ChrLower(c);
    }
    return mnemonic;
}

/// Reads dialogs and their controls, line by line.
class DialogReader
{
public:
    explicit DialogReader(const char *file) : line{file, 0} {}

    std::vector<Dialog> Read()
    {
        std::ifstream in(line.file, std::ios::binary);
        if (!in)
            line.Refuse("the file cannot be read");
        while (std::getline(in, source)) {
            ++line.number;
            source.erase(source.find_last_not_of(" \t\r") + 1);
            pos = source.find_first_not_of(" \t");
            if (pos != std::string::npos && source[pos] != '#')
                ReadLine();
        }
        if (in.bad())
            line.Refuse("the file cannot be read");
        if (dialogs.empty())
            line.Refuse("there is no dialog in this file");
        CloseDialog();
        return std::move(dialogs);
    }

private:
    void ReadLine()
    {
        if (pos != 0)
            ReadControl();
        else if (TakeWord(source, &pos, "dialog"))
            OpenDialog();
        else
            line.Refuse("\"dialog\" or an indented control is expected");
    }

    void OpenDialog()
    {
        CloseDialog();
        Dialog dialog;
        dialog.id = Number("the dialog's number", 1, NUMBER_MAX);
        if (!dialogs.empty() && dialog.id == dialogs.back().id)
            line.Refuse("dialog %d stands twice", dialog.id);
        if (!dialogs.empty() && dialog.id < dialogs.back().id)
            line.Refuse("dialog %d stands behind dialog %d; they are sorted", dialog.id, dialogs.back().id);
        dialog.caption = Text();
        if (dialog.caption.empty())
            line.Refuse("the caption is empty");
        dialog.width = Number("the width", 1, EXTENT_MAX);
        dialog.height = Number("the height", 1, EXTENT_MAX);
        if (!Word().empty())
            line.Refuse("something stands behind the height");
        dialogs.push_back(dialog);
    }

    void ReadControl()
    {
        if (dialogs.empty())
            line.Refuse("this control belongs to no dialog");
        Control control = {};
        control.line = line.number;
        std::string kind(Word());
        control.kind = FindKind(kind);
        if (!control.kind)
            line.Refuse("\"%s\" is no kind of control", kind.c_str());
        control.id = Number("the control's number", -1, NUMBER_MAX);
        bool quoted = pos < source.size() && source[pos] == '"';
        if (quoted)
            control.text = Text();
        else
            control.picture = Number("a text in quotes or the number of a picture", 0, NUMBER_MAX);
        control.x = Number("the left edge", 0, EXTENT_MAX);
        control.y = Number("the upper edge", 0, EXTENT_MAX);
        control.width = Number("the width", 1, EXTENT_MAX);
        control.height = Number("the height", 1, EXTENT_MAX);
        ReadStyles(control);
        CheckContent(control, quoted);
        CheckNumber(control);
        CheckPlace(control);
        dialogs.back().controls.push_back(control);
    }

    void ReadStyles(Control &control)
    {
        for (std::string word(Word()); !word.empty(); word = Word()) {
            const Style *style =
                std::find_if(std::begin(styles), std::end(styles), [&](auto &s) { return s.word == word; });
            if (style == std::end(styles))
                line.Refuse("\"%s\" is no style", word.c_str());
            if (!(control.kind->styles & style->bit))
                line.Refuse("no %s has the style \"%s\"", control.kind->word.data(), word.c_str());
            if (control.style & style->bit)
                line.Refuse("the style \"%s\" stands twice", word.c_str());
            control.style |= style->bit;
        }
        if ((control.style & RES_RIGHT) && (control.style & RES_CENTER))
            line.Refuse("a text stands right or in the middle");
    }

    /// A picture shows a picture, most others a text, and a field neither.
    void CheckContent(const Control &control, bool quoted)
    {
        bool picture = control.kind->kind == RES_PICTURE || (control.style & RES_BITMAP);
        if (picture && quoted)
            line.Refuse("the number of a picture is expected in place of the text");
        if (!picture && !quoted)
            line.Refuse("a text in quotes is expected");
        if (!control.kind->hasText && !control.text.empty())
            line.Refuse("this %s shows no text of its own; its label stands before it",
                        control.kind->word.data());
        MnemonicOf(line, control.text);
    }

    void CheckNumber(const Control &control)
    {
        if (control.id == 0)
            line.Refuse("controls are numbered from 1, or -1 where nobody asks for them");
        if (control.id == -1 && control.kind->takesFocus)
            line.Refuse("this %s needs a number", control.kind->word.data());
        for (const Control &other : dialogs.back().controls) {
            if (control.id != -1 && other.id == control.id)
                line.Refuse("control %d stands twice in this dialog", control.id);
            if (control.kind->kind == RES_DEFAULT && other.kind->kind == RES_DEFAULT)
                line.Refuse("control %d is the default button already", other.id);
        }
    }

    void CheckPlace(const Control &control)
    {
        const Dialog &dialog = dialogs.back();
        if (control.x + control.width > dialog.width || control.y + control.height > dialog.height)
            line.Refuse("this control reaches out of its dialog, which has %d x %d units", dialog.width,
                        dialog.height);
    }

    /// Ends the dialog that is being read.
    void CloseDialog()
    {
        if (dialogs.empty())
            return;
        if (dialogs.back().controls.empty())
            line.Refuse("the dialog above has no controls");
        CheckMnemonics(dialogs.back().controls);
    }

    /// A key leads to one place; that of a label to the field behind it. What is hidden at first may share its
    /// key with what it takes the place of.
    void CheckMnemonics(const std::vector<Control> &controls)
    {
        for (size_t i = 0; i < controls.size(); ++i) {
            const Control &control = controls[i];
            Line its{line.file, control.line};
            char mnemonic = MnemonicOf(its, control.text);
            if (mnemonic == EOS)
                continue;
            bool leads = i + 1 < controls.size() && controls[i + 1].kind->takesFocus;
            if (control.kind->kind == RES_LABEL && !leads)
                its.Refuse("this mnemonic leads to nothing: what it stands for follows the label");
            if (control.style & RES_HIDDEN)
                continue;
            for (size_t k = 0; k < i; ++k)
                if (!(controls[k].style & RES_HIDDEN) && MnemonicOf(its, controls[k].text) == mnemonic)
                    its.Refuse("the control of line %d has this mnemonic already", controls[k].line);
        }
    }

    /// The word at `pos`, empty at the end of the line; steps over it and the blanks behind it.
    std::string_view Word()
    {
        size_t end = std::min(source.find_first_of(" \t", pos), source.size());
        std::string_view word = std::string_view(source).substr(pos, end - pos);
        SkipBlanks(end);
        return word;
    }

    int Number(const char *what, int least, int most)
    {
        std::string word(Word());
        int number = 0;
        auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
        if (end == word.data() || end != word.data() + word.size())
            line.Refuse("%s is expected", what);
        if (error != std::errc() || number < least || number > most)
            line.Refuse("%s is expected, from %d to %d", what, least, most);
        return number;
    }

    std::string Text()
    {
        std::string text = QuotedText(line, source, &pos);
        if (pos < source.size() && source[pos] != ' ' && source[pos] != '\t')
            line.Refuse("a blank is expected behind the closing quote");
        SkipBlanks(pos);
        return text;
    }

    void SkipBlanks(size_t from) { pos = std::min(source.find_first_not_of(" \t", from), source.size()); }

    Line line;
    std::string source; // the line's text
    size_t pos = 0;     // in it
    std::vector<Dialog> dialogs;
};

std::string StyleNames(unsigned style)
{
    std::string names;
    for (const Style &s : styles)
        if (style & s.bit)
            names += (names.empty() ? "" : " | ") + std::string(s.name);
    return names.empty() ? "0" : names;
}

void WriteControls(std::ostream &out, const Dialog &dialog)
{
    out << "const ResCONTROL controls" << dialog.id << "[] = {\n";
    for (const Control &c : dialog.controls)
        out << "    {" << c.kind->name << ", " << c.id << ", " << Literal(c.text) << ", " << c.picture << ", "
            << c.x << ", " << c.y << ", " << c.width << ", " << c.height << ", " << StyleNames(c.style)
            << "},\n";
    out << "};\n";
}
} // namespace

void CompileDialogs(const char *file, std::ostream &out)
{
    std::vector<Dialog> dialogs = DialogReader(file).Read();
    out << "// Made by tools/rescompile.\n#include \"res/tables.h\"\n\nnamespace\n{\n";
    for (const Dialog &dialog : dialogs)
        WriteControls(out, dialog);
    out << "} // namespace\n\nconst ResDIALOG resDialogs[] = {\n";
    for (const Dialog &d : dialogs)
        out << "    {" << d.id << ", " << Literal(d.caption) << ", " << d.width << ", " << d.height
            << ", controls" << d.id << ", " << d.controls.size() << "},\n";
    out << "};\nconst int resDialogCount = " << dialogs.size() << ";\n";
}
