#include <kitbag/frame/compiler.h>

KITBAG_SHARED_SECTION(".UIdle") constinit int shared[4] = {};
