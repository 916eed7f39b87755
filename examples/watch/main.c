/* Prints what changes among the MIDI objects, from whichever program, until it is interrupted. The
 * descriptor fits any event loop; here it is poll's. */
#include <CoreMIDI/MIDIDatabase.h>

#include <poll.h>
#include <stdio.h>

static const char* Word(MIDIObjectType type) {
    switch (type & ~kMIDIObjectType_ExternalMask) {
    case kMIDIObjectType_Device:
        return "device";
    case kMIDIObjectType_Entity:
        return "port";
    case kMIDIObjectType_Source:
        return "source";
    case kMIDIObjectType_Destination:
        return "destination";
    default:
        return "object";
    }
}

static void PrintText(CFStringRef text) {
    char bytes[256];
    if (CFStringGetCString(text, bytes, sizeof bytes, kCFStringEncodingUTF8))
        fputs(bytes, stdout);
    else
        fputs("(a long text)", stdout);
}

static void PrintObject(const char* what, MIDIObjectRef object, MIDIObjectType type) {
    CFStringRef name = NULL;
    printf("%s %s %u", what, Word(type), (unsigned)object);
    if (MIDIObjectGetStringProperty(object, kMIDIPropertyName, &name) == 0) {
        fputs(" \"", stdout);
        PrintText(name);
        fputs("\"", stdout);
        CFRelease(name);
    }
}

/* A property that is gone prints nothing more: its key is all that there is to tell. */
static void PrintValue(MIDIObjectRef object, CFStringRef key) {
    SInt32 number = 0;
    CFStringRef text = NULL;
    if (MIDIObjectGetIntegerProperty(object, key, &number) == 0) {
        printf(" = %d", (int)number);
    } else if (MIDIObjectGetStringProperty(object, key, &text) == 0) {
        fputs(" = ", stdout);
        PrintText(text);
        CFRelease(text);
    }
}

static void Told(const MIDINotification* message, void* context) {
    const MIDIObjectAddRemoveNotification* one = (const MIDIObjectAddRemoveNotification*)message;
    const MIDIObjectPropertyChangeNotification* property =
        (const MIDIObjectPropertyChangeNotification*)message;
    (void)context;
    switch (message->messageID) {
    case kMIDIMsgObjectAdded:
        PrintObject("added", one->child, one->childType);
        break;
    case kMIDIMsgObjectRemoved:
        PrintObject("removed", one->child, one->childType);
        break;
    case kMIDIMsgPropertyChanged:
        PrintObject("changed", property->object, property->objectType);
        fputs(": ", stdout);
        PrintText(property->propertyName);
        PrintValue(property->object, property->propertyName);
        break;
    default: /* the setup as a whole: the end of what changed together */
        fputs("--", stdout);
    }
    putchar('\n');
}

int main(void) {
    MIDIClientRef client = 0;
    struct pollfd waiting = {.events = POLLIN};
    if (MIDIClientCreate(CFSTR("watch"), Told, NULL, &client) != 0)
        return 1;
    waiting.fd = KestrinMIDIClientGetDescriptor(client);
    while (poll(&waiting, 1, -1) > 0 && KestrinMIDIClientDeliver(client) == 0)
        fflush(stdout);
    MIDIClientDispose(client);
    return 0;
}
