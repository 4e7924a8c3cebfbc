// The component's own classes and their faces.

#include <memory>
#include <type_traits>

#include "com/ITag4Face.h"
#include "com/Server.h"
#include "com/kvCheckFace.h"
#include "com/kvDirectTagFace.h"
#include "com/kvLibraryFace.h"
#include "com/kvTagFace.h"
#include "com/kvTagInfoFace.h"
#include "com/kvTagsFace.h"
#include "com/privPropertiesFace.h"
#include "com/privPropertyFace.h"
#include "platform/SystemServices.h"

namespace velmor::com {

namespace {

template <class Core>
automation::ObjectRef make() {
    if constexpr (std::is_default_constructible_v<Core>) {
        return std::make_shared<Core>();
    } else {
        return std::make_shared<Core>(platform::systemServices());
    }
}

const ServedClass classes[] = {
#include "com/Classes.inc"
};

template <class... Faces>
IDispatch* firstFaceOf(const automation::ObjectRef& object) {
    IDispatch* face = nullptr;
    (void)((face = faceFor<Faces>(std::dynamic_pointer_cast<typename Faces::CoreClass>(object))) || ...);
    return face;
}

IDispatch* coreFaceOf(const automation::ObjectRef& object) {
    return firstFaceOf<kvTagFace, privPropertyFace, privPropertiesFace, kvTagsFace, kvDirectTagFace, kvLibraryFace,
                       kvTagInfoFace, ITag4Face, kvCheckFace>(object);
}

}  // namespace

const Server& server() noexcept {
    static const Server component{classes, &LIBID_kvVelmor3, &coreFaceOf};
    return component;
}

}  // namespace velmor::com
