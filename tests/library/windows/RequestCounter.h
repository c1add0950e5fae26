#pragma once

#include <test_support/ImportHook.h>

// What the library posts to its balloon window, and how much of it was freed, as long as the object
// lives. One at a time.
class RequestCounter
{
public:
    RequestCounter();
    ~RequestCounter();
    RequestCounter(const RequestCounter&) = delete;
    RequestCounter& operator=(const RequestCounter&) = delete;

    int Posted() const;
    // Posted, and not freed.
    int Alive() const;

    // Has the platform refuse to post from now on.
    void Refuse();

private:
    test_support::ImportHook m_post;
    test_support::ImportHook m_delete;
};
