/* The ids of the dialog, its controls and its strings. A control's text has the control's id. */
#ifndef SHOPPING_LIST_H
#define SHOPPING_LIST_H

#define IDD_SHOPPING_LIST 100

#define IDC_ITEM 101
#define IDC_LIST 102
#define IDC_HINT 103
#define IDC_ITEM_LABEL 111
#define IDC_ADD 112
#define IDC_REMOVE 113
#define IDC_ENGLISH 121
#define IDC_GERMAN 122

#define IDS_TITLE 201
#define IDS_ENTER_ADDS 202
#define IDS_ENTER_CLOSES 203

#endif
