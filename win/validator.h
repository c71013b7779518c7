// What stands between a text field and the value behind it: a control asks its validator whether a text will
// do, and lets it convert where the validator says that it can. The base takes everything and converts nothing.
#ifndef WIN_VALIDATOR_H
#define WIN_VALIDATOR_H

#include <string>

class TWindow;

enum {
    WIN_VALIDATOR_TRANSFER = 2, // option bit: Transfer converts
    WIN_VALIDATOR_POINT = 16    // option bit: a number with a point, so the comma key types one
};
enum { WIN_TRANSFER_GETDATA = 0, WIN_TRANSFER_SETDATA = 1 }; // from the text, to the text

class TValidator
{
public:
    TValidator() = default;
    TValidator(const TValidator &) = delete;
    TValidator &operator=(const TValidator &) = delete;
    virtual ~TValidator();
    /// Tells the user why the text was refused. Base: nothing.
    virtual void Error(TWindow *owner);
    /// While the user types; `suppressFill` forbids completing the text. Base: true.
    virtual bool IsValidInput(const char *text, bool suppressFill) const;
    /// Whether the complete text will do. Base: true.
    virtual bool IsValid(const char *text);
    /// Converts between the text and the value behind it. Base: nothing.
    /// @return bytes of the value, 0 where the validator knows of none
    virtual int Transfer(char *text, void *value, int direction);
    /// Steps the value in the text by `increment`. Base: leaves the text as it is.
    /// @return by how much the value changed
    virtual int Adjust(char *text, int increment);
    /// What will do, for a tooltip; "" where there is nothing to say. Base: "".
    virtual std::string Hint() const;

    bool HasOption(unsigned bit) const { return (options & bit) != 0; }

protected:
    unsigned options = 0;
};

#endif
