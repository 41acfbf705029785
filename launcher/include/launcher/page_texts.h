// The words of the launcher's pages.
#ifndef LAUNCHER_PAGE_TEXTS_H
#define LAUNCHER_PAGE_TEXTS_H

#include <string>

#include "autopatch/autopatch_types.h"

// "Downloading %d of %d   %d%% - %.1f Kb/s": the words on the progress bar.
std::string make_progress_text(int number, int count, int percent, double rate_kbps);

// The error page's message as tagged text (modules/gui/tagged_text.h): the words for the code, and
// a link to its support article.
std::string make_error_text(AUTOPATCH_ERROR_CODE code);
// The same as plain text for a console: colour tags dropped, links as their text and address.
std::string make_plain_error_text(AUTOPATCH_ERROR_CODE code);

#endif  // LAUNCHER_PAGE_TEXTS_H
