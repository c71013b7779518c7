#include "win/validator.h"

TValidator::~TValidator() = default;

void TValidator::Error(TWindow *) {}

bool TValidator::IsValidInput(const char *, bool) const
{
    return true;
}

bool TValidator::IsValid(const char *)
{
    return true;
}

int TValidator::Transfer(char *, void *, int)
{
    return 0;
}

int TValidator::Adjust(char *, int)
{
    return 0;
}

std::string TValidator::Hint() const
{
    return {};
}
