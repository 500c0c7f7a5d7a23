// Messages and records of the list view and its header.
#pragma once

#include "Platform/Simulated/Sdk/User.h"

constexpr UINT LVM_FIRST = 0x1000;
constexpr UINT LVM_GETITEMCOUNT = LVM_FIRST + 4;
constexpr UINT LVM_GETHEADER = LVM_FIRST + 31;
constexpr UINT LVM_GETITEMTEXTW = LVM_FIRST + 115;
constexpr UINT HDM_FIRST = 0x1200;
constexpr UINT HDM_GETITEMCOUNT = HDM_FIRST + 0;
constexpr UINT HDM_GETITEMW = HDM_FIRST + 11;
constexpr UINT HDM_ORDERTOINDEX = HDM_FIRST + 15;
constexpr UINT HDI_WIDTH = 0x0001;
constexpr UINT HDI_TEXT = 0x0002;
constexpr UINT HDI_ORDER = 0x0080;
constexpr UINT LVIF_TEXT = 0x0001;
constexpr LONG LVS_TYPEMASK = 0x0003;
constexpr LONG LVS_REPORT = 0x0001;

struct LVITEMW {
    UINT mask;
    int iItem;
    int iSubItem;
    UINT state;
    UINT stateMask;
    LPWSTR pszText;
    int cchTextMax;
    int iImage;
    LPARAM lParam;
};

struct HDITEMW {
    UINT mask;
    int cxy;
    LPWSTR pszText;
    void* hbm;
    int cchTextMax;
    int fmt;
    LPARAM lParam;
    int iImage;
    int iOrder;
};
