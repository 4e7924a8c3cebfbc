#pragma once

namespace velmor::platform {

// Enters a single-threaded apartment with the services of OLE for the calling thread, as automation
// objects expect it, and leaves it again. For programs; a component lives in its host's apartment.
class Apartment {
public:
    Apartment();
    ~Apartment();
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;

private:
    bool entered_;
};

}  // namespace velmor::platform
