#include <kitbag/frame/class_object_map.h>

namespace kitbag {

ClassObjectEntry classObjectMap[] = {{}};

}  // namespace kitbag
