// With what macOS has here and not in stdlib.h.
#include_next <unistd.h>
extern "C" char* mkdtemp(char* name) noexcept;
