#pragma once

#include "platform/win32/Faces.h"

namespace velmor::com {

// The component's classes and their faces, for everything that passes the boundary as a Variant.
class ComponentFaces final : public platform::FaceProvider {
public:
    IDispatch* faceOf(const automation::ObjectRef& object) override;
};

}  // namespace velmor::com
