// What the user is told about each way in which an update can end: a sentence and the address of
// the support article that goes further.
#ifndef AUTOPATCH_AUTOPATCH_ERRORS_H
#define AUTOPATCH_AUTOPATCH_ERRORS_H

#include "autopatch/autopatch_types.h"

// The sentence for `code`. Codes outside the enumeration give the text of an unknown internal
// error. The text is static. Any thread.
const char* get_error_str(AUTOPATCH_ERROR_CODE code);

// The support article for `code`: host, path and query, without a scheme; the browser layer adds
// "http://". The text is static. Any thread.
const char* get_error_url(AUTOPATCH_ERROR_CODE code);

#endif  // AUTOPATCH_AUTOPATCH_ERRORS_H
