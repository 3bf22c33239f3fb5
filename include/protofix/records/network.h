/* Records of the network sections: interfaces, services, private protocol, remote devices, wireless. */
#ifndef PROTOFIX_RECORDS_NETWORK_H
#define PROTOFIX_RECORDS_NETWORK_H

/* Capacity of the interface table of KZDEV_NETWORK_CFG. */
#define KZ_MAX_NET_INTERFACES 8

/* Bits of KZ_NET_INTERFACE.flags. */
#define KZ_NET_INTERFACE_ENABLE 0x01u
#define KZ_NET_INTERFACE_DHCP 0x02u

/* KZ_NET_INTERFACE.bondingMode. */
#define KZ_BONDING_NONE 0
#define KZ_BONDING_BALANCE 1
#define KZ_BONDING_OFF 2
#define KZ_BONDING_ACTIVE_BACKUP 3

#ifdef __cplusplus
extern "C" {
#endif

/* One wired interface: 188 bytes. */
typedef struct KZ_NET_INTERFACE {
    char ipAddress[16];      /* "IPAddress", dotted IPv4 text */
    char subnetMask[16];     /* "SubnetMask" */
    char defaultGateway[16]; /* "DefaultGateway" */
    unsigned char reserved1[2];
    unsigned char flags;     /* KZ_NET_INTERFACE_ENABLE | KZ_NET_INTERFACE_DHCP; other bits kept */
    unsigned char isDefault; /* 1 for the default interface */
    unsigned char reserved2[40];
    unsigned char bondingMode; /* KZ_BONDING_* */
    unsigned char reserved3[31];
    char name[64]; /* "eth0", "bond0": the key of the interface's object */
} KZ_NET_INTERFACE;

/* "Network". */
typedef struct KZDEV_NETWORK_CFG {
    int leadingWord;   /* not touched by the conversion */
    char hostName[16]; /* "Hostname" */
    unsigned char reserved[12];
    unsigned int interfaceCount; /* valid entries of interfaces[] */
    KZ_NET_INTERFACE interfaces[KZ_MAX_NET_INTERFACES];
} KZDEV_NETWORK_CFG;

/* "Network_DNS". */
typedef struct KZDEV_DNS_CFG {
    char primaryDns[16];
    char secondaryDns[16];
} KZDEV_DNS_CFG;

/* "RTSP". */
typedef struct KZDEV_RTSP_CFG {
    unsigned short port;
} KZDEV_RTSP_CFG;

/*
 * The device's general network record, 1972 bytes. Shared by "Web", "Multicast", "PPPoE" and
 * "DVRIP_NET"; the reserved stretches are fields of the device that no section converts.
 */
typedef struct KZDEV_NET_CFG {
    unsigned char reserved1[20];
    unsigned short maxConnections; /* DVRIP_NET "MaxConnections" */
    unsigned short tcpPort;        /* DVRIP_NET "TCPPort" */
    unsigned short udpPort;        /* DVRIP_NET "UDPPort" */
    unsigned short httpPort;       /* Web "Port" */
    unsigned char reserved2[2];
    unsigned short sslPort; /* DVRIP_NET "SSLPort" */
    unsigned char reserved3[1592];
    unsigned char multicastEnable; /* Multicast "Enable", DVRIP_NET "MCASTEnable" */
    unsigned char reserved4[1];
    unsigned short multicastPort; /* Multicast "Port", DVRIP_NET "MCASTPort" */
    char multicastAddress[16];    /* Multicast "MulticastAddr", DVRIP_NET "MCASTAddress" */
    unsigned char reserved5[212];
    unsigned char pppoeEnable; /* PPPoE "Enable" */
    unsigned char reserved6[19];
    char pppoeUserName[64]; /* PPPoE "UserName" */
    char pppoePassword[32]; /* PPPoE "Password" */
} KZDEV_NET_CFG;

/* "IPv6": the first interface's IPv6 settings. */
typedef struct KZDEV_IPV6_CFG {
    char linkLocalAddress[44]; /* "LinkLocalAddress", written only */
    char ipAddress[40];        /* "IPAddress" */
    unsigned int prefix;       /* "Prefix" */
    char defaultGateway[40];   /* "DefaultGateway" */
    unsigned char dhcpEnable;  /* "DhcpEnable" */
    char preferredDns[40];     /* "DnsServers"[0] */
    char alternateDns[40];     /* "DnsServers"[1] */
} KZDEV_IPV6_CFG;

/* Capacities of the service records. */
#define KZ_MAX_DDNS_SERVERS 10
#define KZ_MAX_IP_FILTER_ADDRESSES 512
#define KZ_MAX_MAIL_RECEIVERS 3
#define KZ_MAX_REGISTER_SERVERS 10
#define KZ_MAX_REMOTE_DEVICES 32
#define KZ_MAX_WLAN_KEYS 4

/* KZDEV_IPIFILTER_CFG.listType. */
#define KZ_IPFILTER_TRUST_LIST 0
#define KZ_IPFILTER_BANNED_LIST 1

/* KZDEV_MAIL_CFG.secureMode. */
#define KZ_MAIL_SECURE_NONE 0
#define KZ_MAIL_SECURE_SSL 1
#define KZ_MAIL_SECURE_TLS 2

/* KZDEV_NTP_CFG.addressType. */
#define KZ_NTP_ADDRESS_IP 0
#define KZ_NTP_ADDRESS_DOMAIN 1

/* KZ_REGISTER_SERVER_ENTRY.addressKind: 1 when the domain name is the server's address. */
#define KZ_REGISTER_ADDRESS_DOMAIN 1

/* KZDEV_TRANSFER_STRATEGY_CFG.strategy. */
#define KZ_TRANSFER_QUALITY 0
#define KZ_TRANSFER_FLUENCY 1
#define KZ_TRANSFER_AUTO_ADAPT 2

/* KZ_REMOTE_DEVICE.protocolType: 1 to 5; any other code is the device's own protocol. */
#define KZ_REMOTE_PROTOCOL_DEFAULT 0
#define KZ_REMOTE_PROTOCOL_II 1
#define KZ_REMOTE_PROTOCOL_QLMN 2
#define KZ_REMOTE_PROTOCOL_CRX 3
#define KZ_REMOTE_PROTOCOL_RTSP 4
#define KZ_REMOTE_PROTOCOL_TS 5

/* KZ_REMOTE_DEVICE.deviceClass. */
#define KZ_REMOTE_CLASS_IPC 0

/* One dynamic-DNS account: 944 bytes. */
typedef struct KZ_DDNS_SERVER {
    int leadingWord;      /* not touched by the conversion */
    unsigned char enable; /* "Enable" */
    char protocol[32];    /* "Protocol": the provider type */
    char address[256];    /* "Address" */
    unsigned char reserved1[3];
    int port;                           /* "Port" */
    char hostName[256];                 /* "HostName" */
    char userName[64];                  /* "UserName" */
    char password[64];                  /* "Password" */
    int keepAlive;                      /* seconds; "KeepAlive" in minutes */
    unsigned char defaultHostNameInUse; /* "DefaultHostName"."Enable" */
    char defaultHostName[60];           /* "DefaultHostName"."HostName" */
    unsigned char reserved2[3];
    char emailAddress[64]; /* "EmailAddress" */
    unsigned char reserved3[128];
} KZ_DDNS_SERVER;

/* "DDNS": 9448 bytes. */
typedef struct KZDEV_MULTI_DDNS_CFG {
    int leadingWord;          /* not touched by the conversion */
    unsigned int serverCount; /* valid entries of servers[], at most 10 */
    KZ_DDNS_SERVER servers[KZ_MAX_DDNS_SERVERS];
} KZDEV_MULTI_DDNS_CFG;

/* "AccessFilter": the trusted and the banned addresses, 16436 bytes. */
typedef struct KZDEV_IPIFILTER_CFG {
    int leadingWord;          /* not touched by the conversion */
    int enable;               /* "Enable" */
    int listType;             /* "Type": KZ_IPFILTER_TRUST_LIST or KZ_IPFILTER_BANNED_LIST */
    unsigned int bannedCount; /* valid entries of bannedAddresses[] */
    char bannedAddresses[KZ_MAX_IP_FILTER_ADDRESSES][16]; /* "BannedList" */
    unsigned char reserved[32];
    unsigned int trustedCount;                             /* valid entries of trustedAddresses[] */
    char trustedAddresses[KZ_MAX_IP_FILTER_ADDRESSES][16]; /* "TrustList" */
} KZDEV_IPIFILTER_CFG;

/* "Email": the mail sender, 1228 bytes. */
typedef struct KZDEV_MAIL_CFG {
    char address[256]; /* "Address": the mail server */
    unsigned char reserved1[256];
    unsigned short port; /* "Port" */
    unsigned char reserved2[4];
    char sendAddress[128];                      /* "SendAddress" */
    char userName[64];                          /* "UserName" */
    char password[64];                          /* "Password" */
    char receivers[KZ_MAX_MAIL_RECEIVERS][128]; /* "Receivers" */
    char title[64];                             /* "Title" */
    unsigned char enable;                       /* "Enable" */
    unsigned char secureMode;                   /* KZ_MAIL_SECURE_*: "SslEnable", "TlsEnable" */
    unsigned short sendInterval;                /* "SendInterv" */
    unsigned char anonymous;                    /* "Anonymous" */
    unsigned char attachEnable;                 /* "AttachEnable" */
} KZDEV_MAIL_CFG;

/* "AlarmServer": the alarm centre that the device reports to, 32 bytes. */
typedef struct KZDEV_ALARMCENTER_CFG {
    unsigned char enable; /* "Enable" */
    unsigned char reserved;
    unsigned short port; /* "Port" */
    char address[16];    /* "Address" */
    int reportEnable;    /* "ReportWeekDay" -1 when 0 */
    int reportDay;       /* 1 every day, 2-8 one weekday: "ReportWeekDay" */
    int reportHour;      /* "ReportTime" "H:0:0" */
} KZDEV_ALARMCENTER_CFG;

/* "NTP": the time server, 180 bytes. */
typedef struct KZDEV_NTP_CFG {
    unsigned char enable; /* "Enable" */
    unsigned char reserved[3];
    int port;             /* "Port" */
    char ipAddress[32];   /* "Address" when addressType is KZ_NTP_ADDRESS_IP */
    char domainName[128]; /* "Address" when addressType is KZ_NTP_ADDRESS_DOMAIN */
    int addressType;      /* KZ_NTP_ADDRESS_*; set by the caller, never by the table */
    int updatePeriod;     /* "UpdatePeriod" */
    int timeZone;         /* "TimeZone" */
} KZDEV_NTP_CFG;

/* One registration server: 100 bytes. */
typedef struct KZ_REGISTER_SERVER_ENTRY {
    char ipAddress[32]; /* "Address" unless addressKind is KZ_REGISTER_ADDRESS_DOMAIN */
    int port;           /* "Port" */
    unsigned char reserved[3];
    unsigned char addressKind; /* KZ_REGISTER_ADDRESS_DOMAIN: domainName is the address */
    char domainName[60];       /* "Address" of the table goes here */
} KZ_REGISTER_SERVER_ENTRY;

/* "DVRIP_REGISTER": active registration to the registration servers, 1044 bytes. */
typedef struct KZDEV_REGISTER_SERVER {
    int leadingWord;           /* not touched by the conversion */
    unsigned char serverCount; /* valid entries of servers[], at most 10 */
    unsigned char reserved[3];
    KZ_REGISTER_SERVER_ENTRY servers[KZ_MAX_REGISTER_SERVERS];
    unsigned char enable; /* "Enable" */
    char deviceId[32];    /* "DeviceID" */
} KZDEV_REGISTER_SERVER;

/* "DVRIP_TRANS": the stream-transfer policy, 12 bytes. */
typedef struct KZDEV_TRANSFER_STRATEGY_CFG {
    int leadingWord;      /* not touched by the conversion */
    unsigned char enable; /* 0: "None" */
    int strategy;         /* KZ_TRANSFER_* */
} KZDEV_TRANSFER_STRATEGY_CFG;

/*
 * One remote device (an IP camera, typically) that the device pulls streams from: 256 bytes.
 * The fields the device converts come first; the stretch after the device class is the room the
 * entry keeps for fields the conversion does not carry.
 */
typedef struct KZ_REMOTE_DEVICE {
    unsigned char enable; /* "Enable" */
    char address[64];     /* "Address" */
    unsigned char reserved1[3];
    int port;                  /* "Port" */
    int protocolType;          /* KZ_REMOTE_PROTOCOL_*: "ProtocolType" */
    char userName[16];         /* "UserName" */
    char password[16];         /* "Password" */
    char name[32];             /* "Name" */
    unsigned char deviceClass; /* KZ_REMOTE_CLASS_IPC for "DeviceClass" "IPC" */
    unsigned char reserved2[115];
} KZ_REMOTE_DEVICE;

/* "RemoteDevice": 8196 bytes. */
typedef struct KZDEV_REMOTE_DEVICE_CFG {
    int deviceCount; /* valid entries of devices[], at most 32 */
    KZ_REMOTE_DEVICE devices[KZ_MAX_REMOTE_DEVICES];
} KZDEV_REMOTE_DEVICE_CFG;

/* "WLan": the wireless interface "wlan0", 188 bytes. */
typedef struct KZDEV_WLAN_INFO {
    int disabled;                    /* 0: enabled; "Enable" inverted */
    char ssid[36];                   /* "SSID" */
    int linkMode;                    /* "LinkMode": 0 "Auto", 1 "Ad-hoc", 2 "Infrastructure" */
    int encryption;                  /* "Encryption": 0 "Off" ... 11 "WPA2-PSK-AES" */
    int keyType;                     /* "KeyType": 0 "Hex", 1 "ASCII" */
    int keyId;                       /* "KeyID": the key in use */
    char keys[KZ_MAX_WLAN_KEYS][32]; /* "Keys" */
    int keyFlag;                     /* "KeyFlag" */
} KZDEV_WLAN_INFO;

#ifdef __cplusplus
}
#endif

#endif
