#pragma once

namespace velmor::platform {

// Enters a single-threaded apartment with the services of OLE for the calling thread, as automation objects
// expect, and leaves it again. For programs; a component uses its host's apartment.
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
