#pragma once

// Packs the database document in `xmlPath` into a database image at `imagePath`, which is replaced
// whole or left alone. False, after a line on standard error, when that can't be done.
bool packDatabase(const char *xmlPath, const char *imagePath);
