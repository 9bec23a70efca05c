// What macOS has elsewhere: see unistd.h beside this.
#define mkdtemp declared_in_unistd_h
#include_next <stdlib.h>
#undef mkdtemp
