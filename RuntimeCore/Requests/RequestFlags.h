// The numbers that requests and responses carry in their 32-bit fields. A field may hold any other number too, since
// a client may be newer than the server.
#pragma once

#include <cstdint>

namespace Zorvex {

// FindElemFromPoint: which methods run; bits.
enum FromPointFlags : std::uint32_t {
    FromPointBrowseHierarchy = 0x1,
    FromPointHitTest = 0x2,
    FromPointHitTestFromTopLevel = 0x4,  // if the top-level window is on the same thread
    FromPointDomMode = 0x8,              // prefer the element of the HTML element, allow the owner-window fallback
};

// FindElemFromPoint: what to answer in place of the element found. Any other number: the element itself.
enum class RelatedElementKind : std::uint32_t { None = 0, ClosestComboBox = 3 };

// Scrape, GetFullText, GetFullTextFromElements; bits.
enum CaptureFlags : std::uint32_t {
    CaptureByExactRectangle = 0x1,  // the rectangle identifies one element by its exact place
    CaptureClipped = 0x2,           // the rectangle is a clip
    CaptureHighlightInfo = 0x4,     // also return the rectangle of each line
    CaptureIgnoreHidden = 0x8,
    CaptureIgnoreOffscreen = 0x10,  // leave out list items that are off the screen
};

// GetAllItems, SetSelectedItems, GetSelectedItems, ClearSelectedItems: their status.
enum class SelectionResult : std::int32_t {
    Failure = 0,
    Success = 1,
    NothingFoundNoSelectSupport = 2,
    NothingFound = 3,
    ItemDisabled = 4,
};

// GetAncestryInfo: its options; bits.
enum AncestryFlags : std::uint32_t {
    AncestryKeepAllNodes = 0x1,      // record every node that is passed
    AncestryAllAttributes = 0x2,     // each record gets all attributes as well
    AncestrySiblings = 0x4,          // each record gets the siblings and the place among them
    AncestryComputeIndex = 0x8,      // minimal attributes come with an index
    AncestryAaOnlyMode = 0x80,       // stay in the accessible tree
    AncestryStrictOwner = 0x100,
    AncestryCheckUniqueIndex = 0x400,
    AncestryOwnerFallback = 0x800,   // with AncestryStrictOwner: allow falling back to the initial owner window
};

// GetNextParentForAAHierarchy: any number but 0 is 'AA Only'.
enum class HierarchyMode : std::uint32_t { Mixed = 0, AaOnly = 1 };

// TriggerAccessibility: which windows.
enum class TriggerScope : std::uint32_t {
    Window = 0,       // the window given
    Descendants = 1,  // the window given, which must be valid, and all below it
    TopLevels = 2,    // every top-level window; the window given must be null
};

// ExtractTable: what the server remembers of the session; bits.
enum ScrapeSessionFlags : std::uint32_t {
    SameSessionEncountered = 0x1,            // the same elements as the last time
    MightBeDuringLoad = 0x2,                 // comes with every extraction whose elements are all known
    CannotDetermineSession = 0x4,            // an element has no unique id
    PreviousValidSessionDataFound = 0x8,     // there was an earlier extraction whose elements were all known
    PreviousInvalidSessionDataFound = 0x10,  // there was one with an unknown element
};

}  // namespace Zorvex
