#pragma once

// Gives up what reading one file and writing another does not need: from now on this process gains no
// rights by starting programs, opens no file but `readPath` for reading, and changes nothing but what
// stands directly or deeper in the folder of `writePath`. Where the kernel can't confine it, it goes on
// as it is. What these paths lead to is settled now.
void confineTo(const char *readPath, const char *writePath);
