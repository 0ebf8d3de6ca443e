/* Says what in this build of expat is not as the library wants it. */
#include <expat.h>
#include <stdio.h>

static long valueOf(enum XML_FeatureEnum feature)
{
    const XML_Feature* at = XML_GetFeatureList();
    for (; at->feature != XML_FEATURE_END; ++at)
        if (at->feature == feature) return at->value ? at->value : 1;
    return 0;
}

int main(void)
{
    if (sizeof(XML_Char) != 1 || valueOf(XML_FEATURE_UNICODE)) return puts("it has no 8-bit characters") > 0;
    if (valueOf(XML_FEATURE_DTD)) return puts("it reads document types") > 0;
    if (valueOf(XML_FEATURE_GE)) return puts("it has general entities") > 0;
    if (valueOf(XML_FEATURE_CONTEXT_BYTES) > 1) return puts("it copies the text around the parse point") > 0;
    return 0;
}
