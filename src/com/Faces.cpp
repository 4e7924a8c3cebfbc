// The core classes and their faces.

#include "com/kvDirectTagFace.h"
#include "com/kvLibraryFace.h"
#include "com/kvTagFace.h"
#include "com/kvTagInfoFace.h"
#include "com/kvTagsFace.h"
#include "com/privPropertiesFace.h"
#include "com/privPropertyFace.h"

namespace velmor::com {

namespace {

template <class FaceClass, class Core>
IDispatch* faceWhen(const automation::ObjectRef& object) {
    return faceFor<FaceClass>(std::dynamic_pointer_cast<Core>(object));
}

}  // namespace

IDispatch* coreFaceOf(const automation::ObjectRef& object) {
    if (IDispatch* face = faceWhen<kvTagFace, kvTag>(object)) return face;
    if (IDispatch* face = faceWhen<privPropertyFace, privProperty>(object)) return face;
    if (IDispatch* face = faceWhen<privPropertiesFace, privProperties>(object)) return face;
    if (IDispatch* face = faceWhen<kvTagsFace, kvTags>(object)) return face;
    if (IDispatch* face = faceWhen<kvDirectTagFace, kvDirectTag>(object)) return face;
    if (IDispatch* face = faceWhen<kvLibraryFace, kvLibrary>(object)) return face;
    return faceWhen<kvTagInfoFace, kvTagInfo>(object);
}

void give(_kvTag*& place, const std::shared_ptr<kvTag>& value) {
    place = faceFor<kvTagFace>(value);
}

void give(_kvDirectTag*& place, const std::shared_ptr<kvDirectTag>& value) {
    place = faceFor<kvDirectTagFace>(value);
}

void give(_kvTags*& place, const std::shared_ptr<kvTags>& value) {
    place = faceFor<kvTagsFace>(value);
}

void give(_privProperties*& place, const std::shared_ptr<privProperties>& value) {
    place = faceFor<privPropertiesFace>(value);
}

void give(_privProperty*& place, const std::shared_ptr<privProperty>& value) {
    place = faceFor<privPropertyFace>(value);
}

}  // namespace velmor::com
