#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace fuzz {

/// Makes new inputs out of known ones, the same in every run with one seed.
class Mutation
{
public:
    /// The known inputs are at least one, and outlive this object.
    Mutation(const std::vector<std::string>& known, unsigned seed) : m_known(known), m_random(seed)
    {
    }

    /// A known input with one to eight changes.
    std::string Next();

private:
    std::size_t Below(std::size_t end);
    const std::string& AnyKnown() { return m_known[Below(m_known.size())]; }

    void Change(std::string& bytes);
    void FlipBit(std::string& bytes);
    void SetByte(std::string& bytes);
    void SetNumber(std::string& bytes);
    void Insert(std::string& bytes);
    void Erase(std::string& bytes);
    void Repeat(std::string& bytes);
    void Splice(std::string& bytes);

    const std::vector<std::string>& m_known;
    std::mt19937 m_random;
};

} // namespace fuzz
