#pragma once

#include <test_support/ImportHook.h>

// Counts the library's posts to its balloon window, and how many of them were freed, as long as the
// object lives. One object at a time.
class RequestCounter
{
public:
    RequestCounter();
    ~RequestCounter();
    RequestCounter(const RequestCounter&) = delete;
    RequestCounter& operator=(const RequestCounter&) = delete;

    int Posted() const;
    // The requests that were posted and not freed.
    int Alive() const;

    // Makes the platform refuse posts from now on.
    void Refuse();

private:
    test_support::ImportHook m_post;
    test_support::ImportHook m_delete;
};
