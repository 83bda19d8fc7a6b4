<?xml version="1.0" encoding="UTF-8"?>
<!-- Copies an exported document and adds what GNOME Planner's import needs: OutlineNumber, by which it nests tasks, and
     a LinkLag in every link. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
                xmlns:ms="http://schemas.microsoft.com/project" xmlns="http://schemas.microsoft.com/project">
  <xsl:template match="@*|node()">
    <xsl:copy><xsl:apply-templates select="@*|node()"/></xsl:copy>
  </xsl:template>

  <xsl:template match="ms:Task/ms:OutlineLevel">
    <OutlineNumber><xsl:apply-templates select=".." mode="outline"/></OutlineNumber>
    <xsl:copy-of select="."/>
  </xsl:template>

  <!-- "2.3": the third child of the second task of level 1. The task of level 0 is number 0. -->
  <xsl:template match="ms:Task" mode="outline">
    <xsl:variable name="level" select="number(ms:OutlineLevel)"/>
    <xsl:variable name="parent" select="preceding-sibling::ms:Task[ms:OutlineLevel = $level - 1][1]"/>
    <xsl:if test="$level = 0">0</xsl:if>
    <xsl:if test="$level &gt; 1"><xsl:apply-templates select="$parent" mode="outline"/>.</xsl:if>
    <xsl:if test="$level &gt; 0">
      <xsl:value-of select="1 + count(preceding-sibling::ms:Task[ms:OutlineLevel = $level])
                            - count($parent/preceding-sibling::ms:Task[ms:OutlineLevel = $level])"/>
    </xsl:if>
  </xsl:template>

  <xsl:template match="ms:PredecessorLink[not(ms:LinkLag)]">
    <xsl:copy><xsl:apply-templates select="@*|node()"/><LinkLag>0</LinkLag></xsl:copy>
  </xsl:template>
</xsl:stylesheet>
