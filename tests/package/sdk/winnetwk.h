/* A stand-in for the platform's header of network records. */
#ifndef WINNETWK_H
#define WINNETWK_H

typedef struct _NETRESOURCEA {
  DWORD dwScope, dwType, dwDisplayType, dwUsage;
  LPSTR lpLocalName, lpRemoteName, lpComment, lpProvider;
} NETRESOURCEA, *LPNETRESOURCEA;
typedef struct _NETRESOURCEW {
  DWORD dwScope, dwType, dwDisplayType, dwUsage;
  LPWSTR lpLocalName, lpRemoteName, lpComment, lpProvider;
} NETRESOURCEW, *LPNETRESOURCEW;

#endif
