#pragma once

namespace orv {

/// Is called when what it is subscribed to has changed.
class Subscriber {
public:
    virtual ~Subscriber() = default;
    virtual void OnNotify() = 0;
};

/// Calls a member function that wants to know no more than that. `Object` must outlive it.
template <class Object>
class MemFunNoInfoSubscriber : public Subscriber {
public:
    MemFunNoInfoSubscriber(Object& on, void (Object::*call)()) : object(on), function(call) {}
    void OnNotify() override { (object.*function)(); }

private:
    Object& object;
    void (Object::*function)();
};

}  // namespace orv
