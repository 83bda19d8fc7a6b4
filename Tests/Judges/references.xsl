<?xml version="1.0" encoding="UTF-8"?>
<!-- Prints a line for each repeated identifier of an exported document, and for each reference that leads to nothing.
     An assignment may refer to one of the groups (" 1 5 "), which are not written as resources. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
                xmlns:ms="http://schemas.microsoft.com/project">
  <xsl:output method="text"/>
  <xsl:param name="groups"/>
  <xsl:key name="uid" match="ms:Task|ms:Resource|ms:Assignment|ms:Calendar" use="concat(local-name(), ' ', ms:UID)"/>

  <xsl:template match="/ms:Project">
    <xsl:for-each select="*/ms:Task|*/ms:Resource|*/ms:Assignment|*/ms:Calendar">
      <xsl:variable name="it" select="concat(local-name(), ' ', ms:UID)"/>
      <xsl:if test="count(key('uid', $it)) != 1"><xsl:value-of select="concat('twice: ', $it, '&#10;')"/></xsl:if>
      <xsl:if test="not(number(ms:UID) &gt;= 0)"><xsl:value-of select="concat('no number: ', $it, '&#10;')"/></xsl:if>
    </xsl:for-each>
    <xsl:for-each select="ms:Tasks/*/ms:PredecessorLink/ms:PredecessorUID|ms:Assignments/*/ms:TaskUID">
      <xsl:if test="not(key('uid', concat('Task ', .)))"><xsl:call-template name="dangling"/></xsl:if>
    </xsl:for-each>
    <xsl:for-each select="ms:CalendarUID|ms:Resources/*/ms:CalendarUID|ms:Calendars/*/ms:BaseCalendarUID[. != -1]">
      <xsl:if test="not(key('uid', concat('Calendar ', .)))"><xsl:call-template name="dangling"/></xsl:if>
    </xsl:for-each>
    <!-- Links of a task to itself, and base calendars that are not marked as a base. -->
    <xsl:for-each select="ms:Tasks/*/ms:PredecessorLink/ms:PredecessorUID[. = ../../ms:UID]">
      <xsl:call-template name="dangling"/>
    </xsl:for-each>
    <xsl:for-each select="ms:Calendars/*/ms:BaseCalendarUID[key('uid', concat('Calendar ', .))/ms:IsBaseCalendar = 0]">
      <xsl:call-template name="dangling"/>
    </xsl:for-each>
    <!-- -65535 means no resource. -->
    <xsl:for-each select="ms:Assignments/*/ms:ResourceUID[. != -65535 and not(contains($groups, concat(' ', ., ' ')))]">
      <xsl:if test="not(key('uid', concat('Resource ', .)))"><xsl:call-template name="dangling"/></xsl:if>
    </xsl:for-each>
  </xsl:template>

  <xsl:template name="dangling">
    <xsl:value-of select="concat('wrong: ', local-name(../..), '/', local-name(..), ' ',
                                 (ancestor::*/ms:UID)[last()], ' ', local-name(), ' ', ., '&#10;')"/>
  </xsl:template>
</xsl:stylesheet>
