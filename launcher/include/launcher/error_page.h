// ERROR_PAGE: why no client could be started, with the address of the support article.
#ifndef LAUNCHER_ERROR_PAGE_H
#define LAUNCHER_ERROR_PAGE_H

#include <string>

#include "autopatch/autopatch_types.h"

class ERROR_PAGE {
public:
    explicit ERROR_PAGE(AUTOPATCH_ERROR_CODE code) : error_code(code) {}

    // Writes the message to the console.
    void show() const;

private:
    AUTOPATCH_ERROR_CODE error_code;
};

// The page's message as tagged text, links included.
std::string make_error_text(AUTOPATCH_ERROR_CODE code);
// The message as plain text for a console: colour tags dropped, links as their text and address.
std::string make_plain_error_text(AUTOPATCH_ERROR_CODE code);

#endif  // LAUNCHER_ERROR_PAGE_H
