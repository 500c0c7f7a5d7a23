// Lists the children of one element as search results.
#pragma once

namespace Zorvex::Search {

template <class Result>
class ChildIterationPolicy {
public:
    virtual ~ChildIterationPolicy() = default;
    // Moves to the next child that a result can be made of; false at the end.
    virtual bool HasNext() = 0;
    // The child that HasNext found, with a new id. Call HasNext first.
    virtual Result Next() = 0;
    // Whether the walk has to wait before it may go on here.
    virtual bool IsBlocked() const = 0;
    virtual Result DefaultResult() const = 0;
};

}  // namespace Zorvex::Search
