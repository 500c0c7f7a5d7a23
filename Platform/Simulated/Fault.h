// The fault plan: what goes wrong, in which call, and how often; and the changes that calls and time bring about.
#pragma once

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "Platform/Simulated/Calls.h"
#include "Platform/Windows.h"

namespace Simulated {

struct Element;
using ElementPtr = std::shared_ptr<Element>;

// Left, top, width, height, in screen pixels.
struct Rectangle {
    LONG left = 0;
    LONG top = 0;
    LONG width = 0;
    LONG height = 0;
    // Widths may be anything, so the edges are computed in 64 bits.
    bool Holds(LONG x, LONG y) const {
        return x >= left && y >= top && x < std::int64_t{left} + width && y < std::int64_t{top} + height;
    }
    RECT ToRect() const;
};

// One change of the desktop. What it names may be gone already; then nothing happens.
struct Action {
    enum class Kind { Change, Remove, Insert, DestroyWindow, ChangeWindow, Focus, Stall };
    Kind kind = Kind::Change;
    std::string target = {};  // id of the element or window; "self" is the element that the plan belongs to

    // Insert: the new element, and its place among the target's children (past the end means last).
    ElementPtr element = {};
    std::size_t position = static_cast<std::size_t>(-1);

    // Change, in this order: state, then bits added, cleared, toggled.
    std::optional<std::wstring> name = {};
    std::optional<std::wstring> value = {};
    std::optional<LONG> state = {};
    LONG add = 0;
    LONG clear = 0;
    LONG toggle = 0;
    std::optional<Rectangle> rectangle = {};

    // ChangeWindow (and rectangle, above).
    std::optional<std::wstring> title = {};
    std::optional<bool> visible = {};
    std::optional<bool> enabled = {};
    std::optional<bool> hung = {};

    // Stall: milliseconds by which the clock moves.
    unsigned stall = 0;
};

// Meets the calls number `at`, `at + every`, ... of its element (or window, or of the whole desktop), `times` in
// all. The actions run first, then the stall; then the call answers as told, or as usual if nothing is told.
struct Fault {
    CallName call = {};     // Any: every call
    unsigned at = 1;        // from 1
    unsigned times = 0;     // 0: without end
    unsigned every = 1;     // 0 counts as 1
    std::string iid = {};   // QueryInterface, QueryService: only when this interface is asked for, as "IAccessible2"

    std::vector<Action> actions = {};
    unsigned stall = 0;                      // milliseconds on the clock
    bool raise = false;                      // an exception leaves the call: ServerFailure
    std::optional<HRESULT> result = {};      // answered at once, with empty out values
    bool null = false;                       // success with empty out values
    std::optional<VARTYPE> type = {};        // a variant of this type in place of the right one
    std::optional<LONG> count = {};          // a number in place of the right one
    std::optional<std::wstring> text = {};   // a text in place of the right one

    bool Meets(unsigned number) const;
};

// What a fault throws out of a call: nothing that the reader of a foreign object could expect.
struct ServerFailure : std::runtime_error {
    ServerFailure() : std::runtime_error("the simulated server failed") {}
};

}  // namespace Simulated
