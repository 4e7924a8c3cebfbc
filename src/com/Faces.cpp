#include "com/Faces.h"

#include "com/DirectFace.h"
#include "com/Give.h"
#include "com/LibraryFace.h"
#include "com/PropertiesFace.h"
#include "com/PropertyFace.h"
#include "com/TagFace.h"
#include "com/TagInfoFace.h"
#include "com/TagsFace.h"

namespace velmor::com {

namespace {

template <class FaceClass, class Core>
IDispatch* faceWhen(const automation::ObjectRef& object) {
    return faceFor<FaceClass>(std::dynamic_pointer_cast<Core>(object));
}

}  // namespace

IDispatch* ComponentFaces::faceOf(const automation::ObjectRef& object) {
    if (IDispatch* face = faceWhen<TagFace, kvTag>(object)) return face;
    if (IDispatch* face = faceWhen<PropertyFace, privProperty>(object)) return face;
    if (IDispatch* face = faceWhen<PropertiesFace, privProperties>(object)) return face;
    if (IDispatch* face = faceWhen<TagsFace, kvTags>(object)) return face;
    if (IDispatch* face = faceWhen<DirectFace, kvDirectTag>(object)) return face;
    if (IDispatch* face = faceWhen<LibraryFace, kvLibrary>(object)) return face;
    return faceWhen<TagInfoFace, kvTagInfo>(object);
}

void give(_kvTag*& place, const std::shared_ptr<kvTag>& value) {
    place = faceFor<TagFace>(value);
}

void give(_kvDirectTag*& place, const std::shared_ptr<kvDirectTag>& value) {
    place = faceFor<DirectFace>(value);
}

void give(_kvTags*& place, const std::shared_ptr<kvTags>& value) {
    place = faceFor<TagsFace>(value);
}

void give(_privProperties*& place, const std::shared_ptr<privProperties>& value) {
    place = faceFor<PropertiesFace>(value);
}

void give(_privProperty*& place, const std::shared_ptr<privProperty>& value) {
    place = faceFor<PropertyFace>(value);
}

}  // namespace velmor::com
