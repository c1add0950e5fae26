#pragma once

#include <atomic>
#include <functional>
#include <thread>
#include <utility>
#include <vector>

// Threads that read the same thing again and again, while the test's own thread changes it.
class Readers
{
public:
    // isRight reads once, on every thread at the same time. It tells whether the value read is
    // allowed.
    explicit Readers(std::function<bool()> isRight) : m_isRight(std::move(isRight))
    {
        for (int i = 0; i < 3; ++i)
            m_threads.emplace_back([this] { Read(); });
    }
    ~Readers() { Finish(); }
    Readers(const Readers&) = delete;
    Readers& operator=(const Readers&) = delete;

    // Ends the reading and returns how often a wrong value was read.
    int Finish()
    {
        m_done = true;
        m_threads.clear();
        return m_wrong;
    }

private:
    void Read()
    {
        while (!m_done)
            if (!m_isRight()) ++m_wrong;
    }

    std::function<bool()> m_isRight;
    std::atomic<bool> m_done = false;
    std::atomic<int> m_wrong = 0;
    std::vector<std::jthread> m_threads;
};
